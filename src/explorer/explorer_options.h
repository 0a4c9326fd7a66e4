// The explorer's settings in "option.loo" in the program directory.
//
// The file is text in UTF-8, one setting a line, "key=value", after a first
// line "BrindleseeExplorer 1". Keys:
//
//   view=0..4            list mode: Details, Liste, kleine Symbole,
//                        große Symbole, Bildansicht
//   sort=Sortname        sort key: Sortname, SortSize or SortTime
//   descending=0|1
//   columns=w,w,...      the eight column widths of the details view
//   thumbsize=N          thumbnail edge in pixels
//   filter=N             entry of the pattern box, 0 = all pictures
//   folder=PATH          the last folder shown
//   geometry=x,y,w,h     the window's place and size
//   maximized=0|1
//   tree=N               width of the folder tree
//
// In values "\\" stands for a backslash, "\n" and "\r" for line breaks.
// Reading is forgiving: an unknown key, a bad value or a line past the
// limits keeps that setting's default; a missing, foreign or oversized
// file gives all defaults.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "album/language.h"
#include "album/prompter.h"
#include "explorer/folder_listing.h"

namespace brindle::explorer {

enum class ViewMode { Details = 0, List = 1, SmallIcons = 2, LargeIcons = 3, Picture = 4 };

inline constexpr int kMinOptionsThumbnailSize = 32;
inline constexpr int kMaxOptionsThumbnailSize = 1024;
inline constexpr int kMaxColumnWidth = 4000;
inline constexpr int kMaxWindowExtent = 100000;
// A settings file is a few hundred bytes; anything far larger is not ours.
inline constexpr std::size_t kMaxOptionsFileBytes = 64 * 1024;

struct ExplorerOptions {
    ViewMode view = ViewMode::LargeIcons;
    SortKey sort = SortKey::Name;
    bool descending = false;
    std::array<int, kColumnCount> columnWidths{200, 80, 90, 130, 80, 60, 60, 80};
    int thumbnailSize = 160;
    int filter = kFilterAllPictures;
    std::string folder;
    // No place yet: the window picks one.
    int x = -1, y = -1, width = 0, height = 0;
    bool maximized = false;
    int treeWidth = 220;

    bool operator==(const ExplorerOptions&) const = default;
};

inline constexpr const char* kExplorerOptionsFile = "option.loo";

ExplorerOptions decodeExplorerOptions(std::string_view text);
std::string encodeExplorerOptions(const ExplorerOptions& options);

// Reads programDirectory + "option.loo"; defaults when it is missing or broken.
ExplorerOptions loadExplorerOptions(const std::string& programDirectory);
// Writes atomically; a failure is told through `prompter`.
bool saveExplorerOptions(const std::string& programDirectory, const ExplorerOptions& options,
                         Prompter& prompter, Language language);

}  // namespace brindle::explorer
