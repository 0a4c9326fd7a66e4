#include "album/page_file.h"

#include "album/album_file.h"
#include "album/record_fields.h"
#include "album/record_io.h"

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
    if (!tryCodec(result, FileStatus::HeadUnreadable, [&] { reader.read(out.head); })) return result;
    if (!isPageFormat(out.head.format)) {
        result.status = FileStatus::InvalidFormat;
        return result;
    }
    out.olderLayout = out.head.format == kPageFormatOlder;
    result.currentPageLayout = !out.olderLayout;
    out.page = defaults;
    tryCodec(result, FileStatus::RecordUnreadable, [&] {
        if (!out.olderLayout) {
            reader.read(out.page);
            return;
        }
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
    });
    return result;
}

FileResult encodePage(const PageRecord& page, std::string& bytes) {
    const FileHead head{kPageFormat, kContact};
    return encodeRecord(&head, page, bytes);
}

FileResult readPageFile(const std::string& path, const PageRecord& defaults, PageFile& out) {
    std::string bytes;
    FileResult r = readFileBytes(path, bytes);
    return r.ok() ? decodePage(bytes, defaults, out, path) : r;
}

FileResult writePageFile(const std::string& path, const PageRecord& page) {
    std::string bytes;
    FileResult r = encodePage(page, bytes);
    return writeEncodedFile(path, r, bytes);
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
