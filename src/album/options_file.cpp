#include "album/options_file.h"

#include "album/binary_codec.h"
#include "album/file_io.h"

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
    try {
        reader.read(out);
    } catch (const CodecError& e) {
        result.status = FileStatus::RecordUnreadable;
        result.detail = e.what();
    }
    return result;
}

FileResult encodeOptions(const OptionsRecord& options, std::string& bytes) {
    FileResult result;
    BinaryWriter writer;
    try {
        writer.write(options);
    } catch (const CodecError& e) {
        result.status = FileStatus::WriteFailed;
        result.detail = e.what();
        return result;
    }
    bytes = writer.bytes();
    return result;
}

FileResult readOptionsFile(const std::string& path, OptionsRecord& out) {
    std::string bytes;
    IoResult io = readWholeFile(path, bytes);
    if (!io.ok) return {FileStatus::OpenFailed, path, io.error};
    return decodeOptions(bytes, out, path);
}

FileResult writeOptionsFile(const std::string& path, const OptionsRecord& options) {
    std::string bytes;
    FileResult result = encodeOptions(options, bytes);
    result.path = path;
    if (!result.ok()) return result;
    IoResult io = writeFileAtomic(path, bytes);
    if (!io.ok) {
        result.status = FileStatus::WriteFailed;
        result.detail = io.error;
    }
    return result;
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
