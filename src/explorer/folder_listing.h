// What the explorer lists of a folder: the files matching a filter of the
// pattern box, their column data, the sort orders and the file info text.
// Listing never opens a picture; a picture's size comes from whoever
// knows it cheaply (the thumbnail cache's trailer).
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "album/language.h"

namespace brindle::explorer {

// One entry of the pattern box: what it shows and the patterns it stands
// for ("*.jpg;*.jpeg").
struct FileFilter {
    std::string label;
    std::string patterns;
};

// The pattern box in its order: all pictures, all media, all files, each
// format alone, "*.*".
std::vector<FileFilter> fileFilters(Language language);
inline constexpr int kFilterAllPictures = 0;
inline constexpr int kFilterAllMedia = 1;
inline constexpr int kFilterAllSupported = 2;

// The picture and media pattern lists of the first two entries.
const std::string& picturePatterns();
const std::string& mediaPatterns();

// True when `fileName` matches one of the ";"-separated patterns. Only
// "*.*" and "*.ext" forms occur; the comparison ignores case.
bool matchesPatterns(const std::string& fileName, const std::string& patterns);

// A media file (shown with a symbol, played rather than decoded).
bool isMediaName(const std::string& fileName);

// The sort keys of the list, named as the settings store them.
enum class SortKey { Name, Size, Time };
const char* sortKeyName(SortKey key);  // "Sortname", "SortSize", "SortTime"
std::optional<SortKey> sortKeyFromName(const std::string& name);

struct FileEntry {
    std::string name;  // file name only
    std::string path;  // folder + name
    std::uintmax_t size = 0;
    std::int64_t modifiedSeconds = 0;  // since the epoch
    std::int64_t modifiedNanoseconds = 0;
    unsigned permissions = 0;  // the mode's permission bits
    int width = 0;  // 0 while the picture's size is not known
    int height = 0;

    std::int64_t pixels() const { return static_cast<std::int64_t>(width) * height; }
    bool sizeKnown() const { return width > 0 && height > 0; }
};

// Gives a picture's size without opening it; false when it is not known.
using PictureSizeLookup = std::function<bool(const std::string& path, int& width, int& height)>;

struct FolderListing {
    bool ok = false;
    std::string error;  // the system's text when the folder cannot be read
    std::vector<FileEntry> entries;
};

// The regular files of `folder` (not its sub-folders, not hidden dot files)
// that match `patterns`, in no particular order.
FolderListing listFolder(const std::string& folder, const std::string& patterns,
                         const PictureSizeLookup& pictureSize = {});

// Sorts by `key`; equal keys go by name, so the order is always the same.
// Descending turns the key's order round; names of equal keys stay A to Z.
void sortEntries(std::vector<FileEntry>& entries, SortKey key, bool descending);

// The columns of the details view.
enum Column { kColName, kColSize, kColType, kColTime, kColAttributes, kColWidth, kColHeight, kColPixels,
              kColumnCount };
std::vector<std::string> columnHeads(Language language);
// The text of each column for `entry` (empty picture columns while unknown).
std::vector<std::string> columnTexts(const FileEntry& entry, Language language);
// The sort key a click on a column head picks (name for the others).
SortKey sortKeyForColumn(int column);

// "JPG-Datei" / "JPG file"; "Datei" / "File" without an extension.
std::string fileTypeText(const std::string& fileName, Language language);
// "rw-r--r--".
std::string attributeText(unsigned permissions);
// Local time, "31.12.2004 13:45:10" / "2004-12-31 13:45:10".
std::string fileDateText(std::int64_t seconds, Language language);
// Digits grouped by "." / ",".
std::string groupedNumber(std::uintmax_t value, Language language);

// The info box under the list, lines joined by "\n". The picture size line
// is left out while the size is not known.
std::string fileInfoText(const FileEntry& entry, Language language);

}  // namespace brindle::explorer
