// The album project file (.apr) and the template (.vor): FileHead, then the
// AlbumRecord, fields in the order of record_fields.h, no padding, no
// length and no checksum. Bytes after the record are ignored.
#pragma once

#include <string>
#include <string_view>

#include "album/file_result.h"
#include "album/records.h"

namespace brindle {

inline constexpr const char* kAlbumFormat = "Album Projekt: Brindlesee Pro, Version 1.0";
inline constexpr const char* kAlbumFormatOlder = "Album Projekt: HTML-Reisebuch Pro, Version 1.0";
inline constexpr const char* kContact = "E-Mail: alben@brindlesee.example";

struct AlbumFile {
    FileHead head;
    AlbumRecord album;
};

bool isAlbumFormat(const std::string& format);

// Pure codec, used by the file functions and the fuzz targets. `path` only
// goes into the result. On failure `out.album` may be half-read.
FileResult decodeAlbum(std::string_view bytes, AlbumFile& out, const std::string& path = {});
// The head is always written as current.
FileResult encodeAlbum(const AlbumRecord& album, std::string& bytes);

FileResult readAlbumFile(const std::string& path, AlbumFile& out);
FileResult writeAlbumFile(const std::string& path, const AlbumRecord& album);

// The count is stored beside the list and files from outside may disagree;
// the list is what holds the pages, so the count follows it (at most what
// an i16 holds).
inline constexpr int kMaxPageCount = 32767;
void matchPageCountToList(AlbumRecord& album);

// Moves list entry `from` to `to`; the entries between shift by one and the
// album counts as changed. Out-of-range or equal places change nothing.
void movePageEntry(AlbumRecord& album, int from, int to);

// What the reader does with a good record before the album is used: the
// stored slots and directory are not trusted, titles come from the path.
void finishAlbumLoad(AlbumRecord& album, const std::string& path);

// Part of writing an album: the record learns its place and is clean.
void prepareAlbumSave(AlbumRecord& album, const std::string& path);

}  // namespace brindle
