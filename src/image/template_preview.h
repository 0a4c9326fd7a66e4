// The catalogue preview of a template: a normal page of the album drawn in
// small on the album sheet picture, in seven steps (sheet, background,
// buttons, pictures, panoramas, texts, saving). Pages are modelled as
// 800 x 600 pixels and drawn at 17/50 of their size onto the sheet, which
// sits at (24, 18) in a 320 x 240 preview.
#pragma once

#include <functional>
#include <string>

#include "album/records.h"
#include "image/dib_section.h"

namespace brindle {

inline constexpr int kPreviewWidth = 320;
inline constexpr int kPreviewHeight = 240;
inline constexpr int kSheetLeft = 24;
inline constexpr int kSheetTop = 18;
inline constexpr int kSheetWidth = 272;
inline constexpr int kSheetHeight = 204;
// The table the sheet lies on when there is no sheet picture (0x00BBGGRR).
inline constexpr Color kPreviewTable = 0x2F3F5A;
inline constexpr Color kPreviewSheet = 0xFFFFFF;
// The name of the sheet picture in the program directory.
inline constexpr const char* kPreviewSheetPicture = "Albumrahmen und Blatt.jpg";

// A length of the page in preview pixels.
inline int previewLength(int pageLength) { return pageLength * 17 / 50; }
inline int previewX(int pageX) { return kSheetLeft + previewLength(pageX); }
inline int previewY(int pageY) { return kSheetTop + previewLength(pageY); }

// Step 1: a new 320 x 240 preview; the sheet picture made that size, or
// the table with a plain sheet when `sheet` is empty.
void previewSheet(cDIBSection& preview, const cDIBSection& sheet);
// Step 2: the page's colour over the sheet, then its picture tiled at page scale.
void previewBackground(cDIBSection& preview, const PageRecord& page);
// Step 3: back, contents and forward at page scale, side by side, centred
// 4 pixels apart and 6 pixels above the sheet's foot.
void previewButtons(cDIBSection& preview, const PageRecord& page);
// Step 4: each picture in its box; a page without pictures shows two
// sample photos so the preview reads as a page.
void previewPictures(cDIBSection& preview, const PageRecord& page);
// Step 5: each panorama in its box with its first picture.
void previewPanoramas(cDIBSection& preview, const PageRecord& page);
// Step 6: texts as lines of bars in their colour; without texts a heading
// in the album's heading colour and three lines in its text colour.
void previewTexts(cDIBSection& preview, const AlbumRecord& album, const PageRecord& page);

// All seven steps for the album's page template; `step` hears 0..6 before
// each. Step 7 writes `jpegPath`. False when it could not be written.
bool zeichneVorlagenVorschau(const AlbumRecord& album, const std::string& sheetPath, const std::string& jpegPath,
                             const std::function<void(int step)>& step = {});

// The placeholder photos and texts of an empty page (page coordinates).
struct PreviewBox {
    int left, top, width, height;
};
inline constexpr PreviewBox kSamplePhotos[] = {{60, 110, 300, 220}, {440, 150, 300, 220}};
inline constexpr PreviewBox kSampleHeading = {60, 40, 360, 24};
inline constexpr PreviewBox kSampleLines[] = {{60, 420, 680, 10}, {60, 445, 600, 10}, {60, 470, 640, 10}};
inline constexpr Color kSampleSky = 0xDCA86F;
inline constexpr Color kSampleLand = 0x3F6B4A;
inline constexpr Color kSampleBorder = 0xFFFFFF;
inline constexpr Color kMissingPicture = 0xC0C0C0;
inline constexpr Color kEmptyPanorama = 0x605040;

}  // namespace brindle
