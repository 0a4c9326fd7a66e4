// Red-eye removal on a cDIBSection. Positions are picture pixels with y
// counted from the top; the section stores its rows bottom-up, so every
// access goes through bufferRow().
//
// Two ways of working:
// - click: a double click in an eye starts a square spiral search from that
//   point; red pixels are corrected and cost nothing, every other pixel
//   (also a position outside the picture) costs one unit of the budget
//   search width x 10. Two clicks are kept and re-run when a slider moves.
// - selection: every pixel of a rectangle that passes the thresholds
//   becomes grey.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "album/language.h"
#include "image/dib_section.h"
#include "image/image_env.h"

namespace brindle::studio {

// Slider ranges of click mode. Sensitivity t gives the divisor
// s = (t - 9) / 20 + 1: 0 is strict (s = 0.55), 100 takes even pale pink
// for eye red (s = 5.55). The default 12 (s = 1.15) still takes dull pupil
// red such as (120, 60, 70) but no common skin tone: from about 14 on, pink
// skin like (230, 150, 130) counts as red and a search, for which red
// pixels are free, would run over the face. The search width is the number
// of tens of non-red pixels a search may look at.
inline constexpr int kSensitivityMin = 0;
inline constexpr int kSensitivityMax = 100;
inline constexpr int kSensitivityDefault = 12;
inline constexpr int kSearchWidthMin = 1;
inline constexpr int kSearchWidthMax = 100;
inline constexpr int kSearchWidthDefault = 10;

// Thresholds of selection mode. A pixel is treated when red > `red`,
// green < `other` and blue < `other`; it becomes grey of the mean of
// green and blue (with `grey`: of all three) plus `bright`, kept in 0..255.
struct SelectionThresholds {
    static constexpr int kDefaultRed = 60;
    static constexpr int kDefaultOther = 160;
    static constexpr int kDefaultBright = 0;
    int red = kDefaultRed;
    int other = kDefaultOther;
    int bright = kDefaultBright;
    bool grey = false;
};
// Ranges of the threshold controls.
inline constexpr int kThresholdMin = 0;
inline constexpr int kThresholdMax = 255;
inline constexpr int kBrightMin = -255;
inline constexpr int kBrightMax = 255;

struct Rgb {
    int r = 0;
    int g = 0;
    int b = 0;
    bool operator==(const Rgb&) const = default;
};

// The divisor of the pixel test for slider value t.
double sensitivityDivisor(int sensitivity);
// Red in click mode: (G + B) / s < R, R > B and R > G.
bool isEyeRed(const Rgb& c, int sensitivity);
// The corrected colour: red becomes the mean of green and blue (rounded,
// halves up); a colour that is not red comes back unchanged.
Rgb correctEyeRed(const Rgb& c, int sensitivity);
// Selection mode's result for one pixel (unchanged when not treated).
Rgb selectionColour(const Rgb& c, const SelectionThresholds& t);

// Picture pixel access; (x, y) must lie inside.
Rgb pixelAt(const cDIBSection& dib, int x, int y);
void setPixel(cDIBSection& dib, int x, int y, const Rgb& c);

struct SpiralResult {
    int visited = 0;    // steps taken, inside and outside the picture
    int corrected = 0;  // red pixels changed
};

// The spiral search from (x, y). `visit`, when given, sees every position in
// walking order (also those outside the picture). The walk never reads or
// writes outside the picture and ends after at most width x height + budget
// steps, also on a wholly red picture.
SpiralResult spiralSearch(cDIBSection& dib, int x, int y, int sensitivity, int searchWidth,
                          const std::function<void(int, int)>& visit = {});

// Treats every pixel of [left, right) x [top, bottom), clipped to the
// picture. `rowDone(done, rows)` runs after each row; when it returns false
// the work stops there. Returns the number of pixels changed.
long long RedEyeRemoval(cDIBSection& dib, int left, int top, int right, int bottom,
                        const SelectionThresholds& thresholds,
                        const std::function<bool(int, int)>& rowDone = {});

// One picture under correction: the untouched original, the working
// picture, the two click slots and the controls' values. The window and the
// command line only drive this.
class RedEyeSession {
  public:
    struct Click {
        int x = 0;
        int y = 0;
        bool used() const { return x + y != 0; }
    };

    RedEyeSession() = default;
    explicit RedEyeSession(cDIBSection picture) { reset(std::move(picture)); }

    // Starts over on a freshly loaded picture: slots free, not modified.
    void reset(cDIBSection picture);

    const cDIBSection& picture() const { return picture_; }
    const cDIBSection& original() const { return original_; }
    bool empty() const { return picture_.empty(); }

    int sensitivity() const { return sensitivity_; }
    int searchWidth() const { return searchWidth_; }
    // Both clamp to their ranges, then restore the original and re-run the
    // stored clicks, so the effect shows at once.
    void setSensitivity(int t);
    void setSearchWidth(int w);

    // Stores the click in the next slot (0, 1, then 0 again) and searches
    // from it. A click outside the picture does nothing.
    SpiralResult click(int x, int y);
    const Click& slot(int i) const { return slots_[i & 1]; }
    int nextSlot() const { return nextSlot_; }
    // Original back, then the search again for each used slot.
    void rerun();

    SelectionThresholds thresholds;
    // Selection mode over the rectangle (picture pixels, right and bottom
    // exclusive); see RedEyeRemoval.
    long long removeInRectangle(int left, int top, int right, int bottom,
                                const std::function<bool(int, int)>& rowDone = {});

    // The original back; the slots are freed so that a later slider move
    // does not bring old corrections back.
    void restoreOriginal();

    // Differs from the file last loaded or saved.
    bool modified() const { return modified_; }
    // The working picture is now what the file holds.
    void markSaved();
    // Swaps in a working picture computed elsewhere (a worker's copy).
    void adoptPicture(cDIBSection picture);

  private:
    void searchSlots();

    cDIBSection original_;
    cDIBSection picture_;
    Click slots_[2];
    int nextSlot_ = 0;
    int sensitivity_ = kSensitivityDefault;
    int searchWidth_ = kSearchWidthDefault;
    bool modified_ = false;
    // The file holds the original (nothing saved since loading).
    bool fileIsOriginal_ = true;
};

// Writes the corrected picture (JPEG quality 90) through SavePictureFile,
// which replaces the file atomically; a replaced file keeps its times and
// permissions. On failure the message names the path in `language`.
ImageStatus saveRedEyePicture(const cDIBSection& picture, const std::string& path,
                              Language language);

}  // namespace brindle::studio
