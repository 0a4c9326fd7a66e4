// The rows of the explorer's list: what a folder holds under a filter, its
// order by a column, and the file-info text of one row. Plain C++, so the
// window only shows them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "album/language.h"

namespace brindle::explorer {

struct FileRow {
    std::string path;
    std::string name;
    std::string type;        // the suffix in upper case, "JPG"
    std::string attributes;  // "r", "w", "h" as they apply
    std::uintmax_t size = 0;
    std::int64_t modified = 0;  // seconds since 1970
    int width = 0;              // 0 until known
    int height = 0;
    bool media = false;
};

// The columns in the order of the Details view, which are also the sort keys.
enum class Column { Name, Size, Type, Modified, Attributes, Width, Height, Pixels };
inline constexpr int kColumnCount = 8;

// The column heads: "Dateiname", "Größe", ... / "Filename", "Size", ...
std::string columnHead(Column column, Language language);

// One entry of cmbPattern: the text shown and its ";"-joined patterns.
struct PatternEntry {
    std::string text;
    std::string patterns;
};
std::vector<PatternEntry> patternEntries(Language language);

// True for the suffixes that get a media symbol rather than a picture.
bool isMediaFile(const std::string& path);

// The files of `folder` (not its folders) that match one of `patterns`.
// Reads directory entries only; no picture is opened.
std::vector<FileRow> listRows(const std::string& folder, const std::string& patterns);

void sortRows(std::vector<FileRow>& rows, Column key, bool descending);

// The text of one cell as the Details view shows it.
std::string cellText(const FileRow& row, Column column);

// "Dateiinformationen:", "Name: ", ... for TxtFileinfo.
std::string fileInfoText(const FileRow& row, Language language);

}  // namespace brindle::explorer
