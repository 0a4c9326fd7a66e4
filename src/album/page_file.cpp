#include "album/page_file.h"

#include "album/album_file.h"
#include "album/binary_codec.h"
#include "album/file_io.h"
#include "album/record_fields.h"

namespace brindle {

// Reads only the fields of the older layout.
struct OlderPageRecord {
    PageRecord fields;
};

template <class V>
void visitFields(V& v, OlderPageRecord& p) {
    visitOlderPageFields(v, p.fields);
}

bool isPageFormat(const std::string& format) { return format == kPageFormat || format == kPageFormatOlder; }

FileResult decodePage(std::string_view bytes, const PageRecord& defaults, PageFile& out,
                      const std::string& path) {
    FileResult result{FileStatus::Ok, path, {}};
    BinaryReader reader(bytes);
    try {
        reader.read(out.head);
    } catch (const CodecError& e) {
        result.status = FileStatus::HeadUnreadable;
        result.detail = e.what();
        return result;
    }
    if (!isPageFormat(out.head.format)) {
        result.status = FileStatus::InvalidFormat;
        return result;
    }
    out.olderLayout = out.head.format == kPageFormatOlder;
    result.currentPageLayout = !out.olderLayout;
    out.page = defaults;
    try {
        if (out.olderLayout) {
            OlderPageRecord older;
            reader.read(older);
            PageRecord& p = out.page;
            p.background = std::move(older.fields.background);
            p.backgroundColor = older.fields.backgroundColor;
            p.props = std::move(older.fields.props);
            p.panoramas = std::move(older.fields.panoramas);
            p.pictures = std::move(older.fields.pictures);
            p.texts = std::move(older.fields.texts);
            p.music = std::move(older.fields.music);
        } else {
            reader.read(out.page);
        }
    } catch (const CodecError& e) {
        result.status = FileStatus::RecordUnreadable;
        result.detail = e.what();
    }
    return result;
}

FileResult encodePage(const PageRecord& page, std::string& bytes) {
    FileResult result;
    BinaryWriter writer;
    try {
        writer.write(FileHead{kPageFormat, kContact});
        writer.write(page);
    } catch (const CodecError& e) {
        result.status = FileStatus::WriteFailed;
        result.detail = e.what();
        return result;
    }
    bytes = writer.bytes();
    return result;
}

FileResult readPageFile(const std::string& path, const PageRecord& defaults, PageFile& out) {
    std::string bytes;
    IoResult io = readWholeFile(path, bytes);
    if (!io.ok) return {FileStatus::OpenFailed, path, io.error};
    return decodePage(bytes, defaults, out, path);
}

FileResult writePageFile(const std::string& path, const PageRecord& page) {
    std::string bytes;
    FileResult result = encodePage(page, bytes);
    result.path = path;
    if (!result.ok()) return result;
    IoResult io = writeFileAtomic(path, bytes);
    if (!io.ok) {
        result.status = FileStatus::WriteFailed;
        result.detail = io.error;
    }
    return result;
}

void fillPageTexts(PageRecord& page, const std::string& albumTitle) {
    if (page.title.empty()) page.title = "Brindlesee Seite vom Album " + albumTitle;
    if (page.description.empty()) page.description = kDefaultPageDescription;
}

bool istSpezialseite(const std::string& title) {
    for (const char* name : {"Umschlag Hinten", "Umschlag Vorne", "Inhalt", "Vorlage", "AlbumDirectory",
                             "FrontCover", "BackCover"})
        if (title == name) return true;
    return false;
}

}  // namespace brindle
