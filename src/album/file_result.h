// How reading or writing an album file went, and the message the user sees.
#pragma once

#include <string>

#include "album/language.h"

namespace brindle {

enum class FileStatus {
    Ok,
    NotFound,         // "Datei nicht vorhanden"
    OpenFailed,       // the file could not be opened
    HeadUnreadable,   // the head could not be read
    InvalidFormat,    // the head names another kind of file
    RecordUnreadable, // the record after a good head could not be read
    WriteFailed,
};

struct FileResult {
    FileStatus status = FileStatus::Ok;
    std::string path;
    std::string detail;  // system error text or what the codec found
    // A page in the current layout that fails after its head gets the
    // page reader's own (misspelt) message.
    bool currentPageLayout = false;

    bool ok() const { return status == FileStatus::Ok; }
};

std::string fileMessage(const FileResult& r, Language lang);
std::string fileMessageTitle(const FileResult& r, Language lang);

}  // namespace brindle
