#include "album/album_file.h"

#include "album/encoding.h"
#include "album/paths.h"
#include "album/record_fields.h"
#include "album/record_io.h"

namespace brindle {

bool isAlbumFormat(const std::string& format) {
    return format == kAlbumFormat || format == kAlbumFormatOlder;
}

FileResult decodeAlbum(std::string_view bytes, AlbumFile& out, const std::string& path) {
    FileResult result{FileStatus::Ok, path, {}};
    BinaryReader reader(bytes);
    if (!tryCodec(result, FileStatus::HeadUnreadable, [&] { reader.read(out.head); })) return result;
    if (!isAlbumFormat(out.head.format)) {
        result.status = FileStatus::InvalidFormat;
        return result;
    }
    tryCodec(result, FileStatus::RecordUnreadable, [&] { reader.read(out.album); });
    return result;
}

FileResult encodeAlbum(const AlbumRecord& album, std::string& bytes) {
    const FileHead head{kAlbumFormat, kContact};
    return encodeRecord(&head, album, bytes);
}

FileResult readAlbumFile(const std::string& path, AlbumFile& out) {
    std::string bytes;
    FileResult r = readFileBytes(path, bytes);
    return r.ok() ? decodeAlbum(bytes, out, path) : r;
}

FileResult writeAlbumFile(const std::string& path, const AlbumRecord& album) {
    std::string bytes;
    FileResult r = encodeAlbum(album, bytes);
    return writeEncodedFile(path, r, bytes);
}

void matchPageCountToList(AlbumRecord& album) {
    if (album.pages.upper() < 0 || !album.pages.allocated()) album.pages.resetToDummy();
    if (album.pages.upper() > kMaxPageCount) album.pages.resize(kMaxPageCount);
    album.pageCount = static_cast<std::int16_t>(album.pages.upper());
}

void movePageEntry(AlbumRecord& album, int from, int to) {
    DynArray<PageEntry>& list = album.pages;
    if (from < 1 || to < 1 || from > list.upper() || to > list.upper() || from == to) return;
    const PageEntry moved = list[from];
    const int step = from < to ? 1 : -1;
    for (int i = from; i != to; i += step) list[i] = list[i + step];
    list[to] = moved;
    album.modified = kTrue;
}

void finishAlbumLoad(AlbumRecord& album, const std::string& path) {
    album.modified = kFalse;
    matchPageCountToList(album);
    // Files from before the menu colours carry three zeros.
    if (album.menuColor1 == 0 && album.menuColor2 == 0 && album.menuColor3 == 0) {
        album.menuColor1 = 0x800000;
        album.menuColor2 = 0x00FFFF;
        album.menuColor3 = 0xFFFFFF;
    }
    for (int i = 1; i <= album.pages.upper(); ++i) album.pages[i].slot = 0;
    if (endsWithNoCase(path, "album.vor")) {
        album.fileName.clear();
        album.title = "Album";
        album.modified = kFalse;
    } else {
        teilePfad(path, album.directory, album.fileName);
        album.title = utf8Left(album.fileName, utf8Length(album.fileName) >= 4 ? utf8Length(album.fileName) - 4 : 0);
    }
}

void prepareAlbumSave(AlbumRecord& album, const std::string& path) {
    album.modified = kFalse;
    teilePfad(path, album.directory, album.fileName);
    std::size_t len = utf8Length(album.fileName);
    album.title = utf8Left(album.fileName, len >= 4 ? len - 4 : 0);
}

}  // namespace brindle
