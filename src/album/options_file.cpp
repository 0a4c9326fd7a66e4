#include "album/options_file.h"

#include "album/record_io.h"

namespace brindle {

OptionsRecord defaultOptions() {
    OptionsRecord o;
    o.explorerColumns.resize(20);
    o.language = "deutsch";
    return o;
}

FileResult decodeOptions(std::string_view bytes, OptionsRecord& out, const std::string& path) {
    FileResult result{FileStatus::Ok, path, {}};
    BinaryReader reader(bytes);
    tryCodec(result, FileStatus::RecordUnreadable, [&] { reader.read(out); });
    return result;
}

FileResult encodeOptions(const OptionsRecord& options, std::string& bytes) {
    return encodeRecord(static_cast<const FileHead*>(nullptr), options, bytes);
}

FileResult readOptionsFile(const std::string& path, OptionsRecord& out) {
    std::string bytes;
    FileResult r = readFileBytes(path, bytes);
    return r.ok() ? decodeOptions(bytes, out, path) : r;
}

FileResult writeOptionsFile(const std::string& path, const OptionsRecord& options) {
    std::string bytes;
    FileResult r = encodeOptions(options, bytes);
    return writeEncodedFile(path, r, bytes);
}

OptionsRecord loadOptions(const std::string& programDirectory) {
    OptionsRecord o;
    if (!readOptionsFile(programDirectory + kOptionsFileName, o).ok()) {
        o = OptionsRecord{};  // a half-read record is not trusted
        o.explorerLayout = 4;
        o.startFlagA = kTrue;
        o.startFlagB = kFalse;
    }
    if (!o.explorerColumns.allocated()) o.explorerColumns.resize(20);
    if (o.scrollSmallStep == 0 || o.scrollLargeStep == 0) {
        o.scrollSmallStep = 200;
        o.scrollLargeStep = 600;
    }
    if (o.language.empty()) o.language = "deutsch";
    return o;
}

}  // namespace brindle
