// The album's plain records. Their field order is the order of the .apr,
// .apg and .vor files, and the spare fields are kept so that files of other
// versions pass through load and save unchanged.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "album/dyn_array.h"

namespace brindle {

// A Boolean is an i16 on disk: 0 false, 65535 (or any non-zero value) true.
using Bool16 = std::uint16_t;
constexpr Bool16 kTrue = 0xFFFF;
constexpr Bool16 kFalse = 0;
inline bool isTrue(Bool16 b) { return b != 0; }
inline Bool16 toBool16(bool b) { return b ? kTrue : kFalse; }

// Colours are 0x00BBGGRR.
using Color = std::uint32_t;
constexpr Color kNavy = 0x800000;
constexpr Color kGrey = 0xC0C0C0;

struct FontSpec {
    Color color = 0;
    std::string name;     // empty means "Arial"
    std::int32_t size = 0;  // points, 0 means 9
    Bool16 bold = kFalse;
    Bool16 italic = kFalse;
    Bool16 underline = kFalse;

    bool operator==(const FontSpec&) const = default;
};

// The spare run at the end of every element record, of PageProps and of the
// options. Features added later live here (see the element records).
struct ExtBlock {
    std::array<std::int32_t, 7> extLong{};  // extLong1..extLong7
    DynArray<std::int32_t> extLongs1;
    DynArray<std::int32_t> extLongs2;
    std::array<std::string, 7> extText;  // extText1..extText7
    DynArray<std::string> extTexts1;
    DynArray<std::string> extTexts2;
    FontSpec extFont;  // not stored for SearchElement

    bool operator==(const ExtBlock&) const = default;
};

struct FileHead {
    std::string format;
    std::string contact;

    bool operator==(const FileHead&) const = default;
};

struct PageEntry {
    std::string title;      // name in the explorer and HTML file stem
    std::string fileName;   // with ".apg"; empty while never saved
    std::string directory;  // ends in a separator; empty while never saved
    std::int16_t slot = 0;  // session slot while open, 0 when closed

    bool operator==(const PageEntry&) const = default;
};

struct AlbumStyle {
    std::string spare1;
    std::string spare2;
    FontSpec headingFont;
    FontSpec textFont;
    std::int16_t spareFlag = 0;
    Bool16 linkColorsActive = kFalse;
    FontSpec linkFont;
    FontSpec visitedLinkFont;
    FontSpec activeLinkFont;

    bool operator==(const AlbumStyle&) const = default;
};

struct PageProps {
    std::string backButton;
    std::string contentsButton;
    std::string forwardButton;
    ExtBlock ext;  // extLong1 = autoForwardSeconds

    bool operator==(const PageProps&) const = default;
};

// One picture of a panorama set. The two number blocks keep their sizes of
// 114 and 44 bytes; the field placement inside them is our own.
struct PanoHotspot {
    std::string urlName;      // picture path
    std::string alternative;  // shown where the viewer does not run
    // Block 1 (114 bytes): five i16 arrays of 11 entries, then i32 Next_Time.
    std::array<std::int16_t, 11> x1{};
    std::array<std::int16_t, 11> x2{};
    std::array<std::int16_t, 11> y1{};
    std::array<std::int16_t, 11> y2{};
    std::array<std::int16_t, 11> target{};  // picture index a hotspot leads to
    std::int32_t nextTime = 0;
    std::string zoomStart;  // "Min", "Max", "Full" or a percentage
    // Block 2 (44 bytes): start view, four viewer values, 20 spare bytes.
    std::int32_t xStart = 0;
    std::int32_t yStart = 0;
    std::array<std::int32_t, 4> values{};
    std::array<std::uint8_t, 20> spare{};
    ExtBlock ext;

    bool operator==(const PanoHotspot&) const = default;
};

struct PanoramaElement {
    std::int16_t top = 0, left = 0, width = 0, height = 0;
    Bool16 deleted = kFalse;
    std::array<std::uint8_t, 6> spare{};
    std::int16_t hotspotCount = 0;
    std::int16_t currentHotspot = 0;
    std::array<PanoHotspot, 21> hotspots;
    std::int16_t spareFlag = 0;
    ExtBlock ext;  // extLong1 = ZPos

    bool operator==(const PanoramaElement&) const = default;
};

struct PictureElement {
    std::int16_t top = 0, left = 0, width = 0, height = 0;
    std::string path;
    Bool16 deleted = kFalse;
    std::array<std::uint8_t, 6> spare{};
    std::string hyperlink;
    Bool16 proportional = kFalse;
    std::int16_t pictureWidth = 0;
    std::int16_t pictureHeight = 0;
    // extLong1 original size (0/-1), extLong2 ZPos, extLong5 link behaviour,
    // extLong6 rotation; extText1 frameSpec, extText2 animationSpec,
    // extText3/extText4 shown box width/height as decimal text.
    ExtBlock ext;

    bool operator==(const PictureElement&) const = default;
};

struct TextElement {
    std::int16_t top = 0, left = 0, width = 0, height = 0;
    std::string text;
    Bool16 deleted = kFalse;
    std::array<std::uint8_t, 6> spare{};
    FontSpec font;
    std::string hyperlink;
    // extLong1 ZPos, extLong2 resize mode, extLong3 break in words,
    // extLong4 link behaviour, extLong5 tip mode; extText1 wrapped text,
    // extText2 tips separated by semicolons.
    ExtBlock ext;

    bool operator==(const TextElement&) const = default;
};

struct SearchElement {
    std::int16_t top = 0, left = 0, width = 0, height = 0;
    std::string caption;
    Bool16 deleted = kFalse;
    std::array<std::uint8_t, 6> spare{};
    FontSpec font;
    std::string hyperlink;
    ExtBlock ext;  // extLong1 = ZPos; extFont is not stored

    bool operator==(const SearchElement&) const = default;
};

struct StackEntry {
    std::int32_t index = 0;
    std::string kind;  // "text", "bild", "panorama" (older "pan360"), "suchmaschine"

    bool operator==(const StackEntry&) const = default;
};

struct PageRecord {
    std::string background;
    Color backgroundColor = 0;
    PageProps props;
    DynArray<PanoramaElement> panoramas;
    DynArray<PictureElement> pictures;
    DynArray<TextElement> texts;
    std::string music;
    DynArray<StackEntry> stack;
    DynArray<SearchElement> searchBoxes;
    std::string title;
    std::string description;

    bool operator==(const PageRecord&) const = default;
};

struct AlbumRecord {
    std::string title;
    DynArray<PageEntry> pages;
    std::int16_t pageCount = 0;
    Bool16 modified = kFalse;
    std::string directory;
    std::string fileName;
    AlbumStyle style;
    PageRecord pageDefaults;
    PageRecord coverDefaults;
    Bool16 relativeOnlyUnrelated = kTrue;
    std::string relativePath;
    std::int32_t indexThumbWidth = 100;
    std::int32_t indexThumbHeight = 100;
    std::int32_t indexColumns = 5;
    std::string htmlDirectory;
    std::int32_t insertHeight = 300;
    std::int32_t insertWidth = 500;
    std::int32_t insertOriginalSize = 0;
    std::int32_t insertGapX = 9;
    std::int32_t insertGapY = 9;
    std::int32_t insertRows = 3;
    Bool16 insertWrapAsView = kTrue;
    Bool16 insertNameBelow = kFalse;
    Bool16 insertInRows = kFalse;
    Bool16 insertToMaxWidth = kFalse;
    std::int32_t insertMaxWidth = 800;
    Bool16 loadReduced = kTrue;
    Bool16 htmlReduce = kTrue;
    Bool16 fullViewNewWindow = kFalse;
    Bool16 keepAspect = kTrue;
    Bool16 linkToReduced = kFalse;
    std::int32_t htmlJpegQuality = 90;
    std::int32_t mailJpegQuality = 65;
    Bool16 openDefaultMail = kFalse;
    std::int32_t indexJpegQuality = 90;
    std::string mailIgnoreEndings;
    std::int32_t mailIgnoreSize = 0;
    std::string spareText1;
    std::string spareText2;
    std::string mailDirectory;
    Color menuColor1 = 0xA00000;
    Color menuColor2 = 0x00FFFF;
    Color menuColor3 = 0xFFFFFF;
    DynArray<std::int16_t> menuOpenFlags;

    bool operator==(const AlbumRecord&) const = default;
};

struct PageSlot {
    Bool16 free = kTrue;
    Bool16 modified = kFalse;
    std::array<std::uint8_t, 4> spare{};

    bool operator==(const PageSlot&) const = default;
};

// ZPos: an element's own position in its page's stack (1 = back).
inline std::int32_t& zPos(PictureElement& e) { return e.ext.extLong[1]; }
inline std::int32_t& zPos(TextElement& e) { return e.ext.extLong[0]; }
inline std::int32_t& zPos(SearchElement& e) { return e.ext.extLong[0]; }
inline std::int32_t& zPos(PanoramaElement& e) { return e.ext.extLong[0]; }

// Seconds after which the HTML page moves on; 0 means never.
inline std::int32_t& autoForwardSeconds(PageProps& p) { return p.ext.extLong[0]; }

// Fills an album with the program's defaults; `programDirectory` ends in '/'.
void ladeStandards(AlbumRecord& album, const std::string& programDirectory);

// The credit sentence a page gets when its description is empty.
extern const char* const kDefaultPageDescription;

}  // namespace brindle
