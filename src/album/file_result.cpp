#include "album/file_result.h"

namespace brindle {

std::string fileMessage(const FileResult& r, Language lang) {
    const std::string withDetail = r.path + "\r" + r.detail;
    switch (r.status) {
        case FileStatus::Ok:
            return {};
        case FileStatus::NotFound:
            return tr(lang, "Datei nicht vorhanden: ", "File not found: ") + r.path;
        case FileStatus::OpenFailed:
            return tr(lang, "Datei kann nicht geöffnet werden: ", "Could not open the file: ") + withDetail;
        case FileStatus::HeadUnreadable:
            return tr(lang, "Datei kann nicht gelesen werden: ", "Could not read the file: ") + withDetail;
        case FileStatus::InvalidFormat:
            return tr(lang, "Datei hat ein ungültiges Format: ", "Could not read the format of the file: ") +
                   r.path;
        case FileStatus::RecordUnreadable:
            if (r.currentPageLayout)
                return tr(lang, "Datei kann nicht geöfnet werden: ", "Could not open the file: ") + withDetail;
            return tr(lang, "Datei kann nicht gelesen werden: ", "Could not read the file: ") + withDetail;
        case FileStatus::WriteFailed:
            return tr(lang, "Fehler beim schreiben der Datei: ", "Error while writing the file: ") +
                   std::string("\r") + withDetail;
    }
    return {};
}

std::string fileMessageTitle(const FileResult& r, Language lang) {
    if (r.status == FileStatus::NotFound) return "Fehler";
    return tr(lang, "Fehler", "Error");
}

}  // namespace brindle
