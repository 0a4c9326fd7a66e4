#include "album/record_io.h"

#include "album/file_io.h"

namespace brindle {

FileResult readFileBytes(const std::string& path, std::string& bytes) {
    IoResult io = readWholeFile(path, bytes);
    if (!io.ok) return {FileStatus::OpenFailed, path, io.error};
    return {FileStatus::Ok, path, {}};
}

FileResult writeEncodedFile(const std::string& path, FileResult encoded, const std::string& bytes) {
    encoded.path = path;
    if (!encoded.ok()) return encoded;
    IoResult io = writeFileAtomic(path, bytes);
    if (!io.ok) {
        encoded.status = FileStatus::WriteFailed;
        encoded.detail = io.error;
    }
    return encoded;
}

}  // namespace brindle
