// What the album, page and options files share: running the codec with its
// errors turned into FileResult values, and reading or writing whole files.
#pragma once

#include <string>

#include "album/binary_codec.h"
#include "album/file_result.h"
#include "album/record_fields.h"
#include "album/records.h"

namespace brindle {

// Runs `fn`; a codec error sets `failure` and its text. False on error.
template <class Fn>
bool tryCodec(FileResult& result, FileStatus failure, Fn&& fn) {
    try {
        fn();
        return true;
    } catch (const CodecError& e) {
        result.status = failure;
        result.detail = e.what();
        return false;
    }
}

// The head (when given) and the record as file bytes.
template <class T>
FileResult encodeRecord(const FileHead* head, const T& record, std::string& bytes) {
    FileResult result;
    BinaryWriter writer;
    if (tryCodec(result, FileStatus::WriteFailed, [&] {
            if (head) writer.write(*head);
            writer.write(record);
        }))
        bytes = writer.bytes();
    return result;
}

// The whole file, or OpenFailed with the system's text.
FileResult readFileBytes(const std::string& path, std::string& bytes);
// Writes `bytes` atomically when `encoded` went well; the result names `path`.
FileResult writeEncodedFile(const std::string& path, FileResult encoded, const std::string& bytes);

}  // namespace brindle
