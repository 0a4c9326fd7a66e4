#include "panorama/pano_project.h"

#include <filesystem>
#include <system_error>

#include "album/binary_codec.h"

namespace brindle::panorama {

namespace {

// Much more than any row of photos; keeps a hostile file from growing a
// huge vector of tiny records.
constexpr std::size_t kMaxProjectBytes = 16u << 20;

void writeRecord(BinaryWriter& w, const PanoBild& r) {
    w.write(r.gematcht);
    w.write(r.reserve[0]);
    w.write(r.reserve[1]);
    w.write(r.xVersatz);
    w.write(r.yVersatz);
    w.write(r.yKorrektur);
    w.write(r.yMittel);
    for (int i = 0; i < 3; ++i) w.write(r.arbeit[i]);
    w.write(r.datei);
}

void readRecord(BinaryReader& rd, PanoBild& r) {
    rd.read(r.gematcht);
    rd.read(r.reserve[0]);
    rd.read(r.reserve[1]);
    rd.read(r.xVersatz);
    rd.read(r.yVersatz);
    rd.read(r.yKorrektur);
    rd.read(r.yMittel);
    for (int i = 0; i < 3; ++i) rd.read(r.arbeit[i]);
    rd.read(r.datei);
}

}  // namespace

std::string panoProjectPath(const std::string& programDirectory) {
    std::string dir = programDirectory;
    if (!dir.empty() && dir.back() != '/') dir += '/';
    return dir + "PanoTemp/" + kProjectFileName;
}

bool encodePanoProject(const std::vector<PanoBild>& records, std::string& out, std::string& error) {
    try {
        BinaryWriter w;
        for (const PanoBild& r : records) writeRecord(w, r);
        out = w.bytes();
        return true;
    } catch (const CodecError& e) {
        error = e.what();
        return false;
    }
}

bool decodePanoProject(std::string_view bytes, std::vector<PanoBild>& records, std::string& error) {
    if (bytes.size() > kMaxProjectBytes) {
        error = "project file larger than any panorama row";
        return false;
    }
    std::vector<PanoBild> read;
    try {
        BinaryReader rd(bytes);
        while (rd.remaining() > 0) readRecord(rd, read.emplace_back());
    } catch (const CodecError& e) {
        error = e.what();
        return false;
    }
    records = std::move(read);
    return true;
}

IoResult writePanoProject(const std::string& programDirectory,
                          const std::vector<PanoBild>& records) {
    IoResult result;
    std::string bytes;
    if (!encodePanoProject(records, bytes, result.error)) return result;
    const std::string path = panoProjectPath(programDirectory);
    std::error_code ec;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ec);
    if (ec) {
        result.error = ec.message();
        return result;
    }
    return writeFileAtomic(path, bytes);
}

IoResult readPanoProject(const std::string& programDirectory, std::vector<PanoBild>& records) {
    std::string bytes;
    IoResult result = readWholeFile(panoProjectPath(programDirectory), bytes, kMaxProjectBytes);
    if (!result.ok) return result;
    result.ok = decodePanoProject(bytes, records, result.error);
    return result;
}

}  // namespace brindle::panorama
