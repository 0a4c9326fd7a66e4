// cDIBSection: the working picture of all pixel code. 24 bits per pixel in
// blue, green, red order, rows bottom-up (buffer row 0 is the picture's
// bottom row), each row padded to a multiple of 4 bytes. The object is its
// own device context: hdc() is a Surface on the same bytes.
//
// Effects work in place on the buffer rows, so "row y" in an effect is
// buffer row y, counted from the bottom. Each effect takes an optional
// progress word that it sets to 0, to (row x 100) / Height after each row
// and to 100 at the end; the object's own word (Progress()) follows too.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "image/image_env.h"
#include "image/picture.h"
#include "image/progress.h"
#include "image/surface.h"

namespace brindle {

class PictureHolder;
class RowFeed;

// The 40-byte bitmap info header of the section, as a packed DIB holds it.
struct BitmapInfoHeader {
    std::uint32_t size = 40;
    std::int32_t width = 0;
    std::int32_t height = 0;  // positive: rows stored bottom-up
    std::uint16_t planes = 1;
    std::uint16_t bitCount = 24;
    std::uint32_t compression = 0;
    std::uint32_t sizeImage = 0;  // height x bytes per scan line
    std::int32_t xPelsPerMeter = 0;
    std::int32_t yPelsPerMeter = 0;
    std::uint32_t clrUsed = 0;
    std::uint32_t clrImportant = 0;
};

// Takes a picture for the clipboard; true when the clipboard accepted it.
using ClipboardSink = std::function<bool(const Picture&)>;

class cDIBSection {
  public:
    cDIBSection() = default;
    cDIBSection(const cDIBSection&) = default;
    cDIBSection& operator=(const cDIBSection&) = default;
    cDIBSection(cDIBSection&& other) noexcept;
    cDIBSection& operator=(cDIBSection&& other) noexcept;
    ~cDIBSection() { ClearUp(); }

    // --- the section -------------------------------------------------------
    // Releases what is held and makes a black section of width x height.
    // False (and empty) when a side is not positive or memory runs out.
    bool Create(int width, int height);
    // Fills `header` and allocates the zeroed bits; true when that worked.
    static bool CreateDIB(int width, int height, std::vector<std::uint8_t>& bits,
                          BitmapInfoHeader& header);
    void ClearUp();

    static int BytesPerScanLine(int width) { return ((width + 1) * 3) & ~3; }
    int BytesPerScanLine() const { return BytesPerScanLine(header_.width); }
    int Width() const { return header_.width; }
    int Height() const { return header_.height; }
    bool empty() const { return bits_.empty(); }
    // The device context; an empty Surface while the object is empty.
    Surface hdc() const;
    // Non-zero while the object holds a section.
    std::uintptr_t hDib() const {
        return empty() ? 0 : reinterpret_cast<std::uintptr_t>(bits_.data());
    }
    std::uint8_t* DIBSectionBitsPtr() { return empty() ? nullptr : bits_.data(); }
    const std::uint8_t* DIBSectionBitsPtr() const { return empty() ? nullptr : bits_.data(); }
    const BitmapInfoHeader& header() const { return header_; }
    // The EXIF block (TIFF bytes) of the JPEG this picture was read from,
    // empty for any other. The pixels are always upright, so a writer that
    // keeps the block sets its orientation to 1. The block belongs to the
    // photo, not to the pixels: Create and ClearUp leave it alone.
    const std::string& exif() const;
    void setExif(std::string block);
    void setExif(std::shared_ptr<const std::string> block) { exif_ = std::move(block); }
    const std::shared_ptr<const std::string>& sharedExif() const { return exif_; }
    std::uint8_t* rowBits(int bufferRow) {
        return bits_.data() + static_cast<std::size_t>(bufferRow) * stride();
    }
    const std::uint8_t* rowBits(int bufferRow) const {
        return bits_.data() + static_cast<std::size_t>(bufferRow) * stride();
    }
    int Progress() const { return progress_.load(); }

    // --- pictures in and out ----------------------------------------------
    bool CreateFromPicture(const brindle::Picture& picture);
    bool PictureFromHandle(const cDIBSection* handle);
    bool CopyPicture(const PictureHolder& holder);
    brindle::Picture Picture() const;
    brindle::Picture pictureTo() const { return Picture(); }

    // --- blits (device-context coordinates, top-left origin) ---------------
    // Copies from `src` into this object at (0, 0); -1 for w or h means the
    // object's own size.
    bool LoadPictureBlt(const Surface& src, int sx = 0, int sy = 0, int w = -1, int h = -1,
                        std::uint32_t rop = SRCCOPY);
    // Copies from this object; -1 for w or h means the object's own size,
    // other negative extents mirror.
    bool PaintPicture(const Surface& dst, int x = 0, int y = 0, int w = -1, int h = -1, int sx = 0,
                      int sy = 0, std::uint32_t rop = SRCCOPY) const;
    bool StretchPicture(const Surface& dst, int x, int y, int w, int h, int sx, int sy, int sw,
                        int sh, std::uint32_t rop = SRCCOPY) const;
    bool StretchLoadPicture(const Surface& src, int x, int y, int w, int h, int sx, int sy, int sw,
                            int sh, std::uint32_t rop = SRCCOPY);
    // With `asDib` the answer is a message: only bitmaps go to the clipboard.
    ImageStatus CopyToClipboard(bool asDib, const ClipboardSink& clipboard) const;

    // Bilinear resampling into a new section (same size: a plain copy).
    cDIBSection Resample(int newHeight, int newWidth) const;

    // --- table and per-pixel effects (effects_tables.cpp) ------------------
    void effectKontrastBits(int contrast, ProgressWord* progress = nullptr);
    void effectBrightnessBits(int brightness, ProgressWord* progress = nullptr);
    void effectBrightnessBitsFast(int brightness, ProgressWord* progress = nullptr);
    // Rows 0 to 30 only; returns the time taken in milliseconds.
    double effectBrightnessBitsTest(int brightness, ProgressWord* progress = nullptr);
    void effectIntensiv(int strength, ProgressWord* progress = nullptr);
    void effectNeon(int phase, int mode, bool gray, ProgressWord* progress = nullptr);
    void effectGamma(int gammaTimes100, ProgressWord* progress = nullptr);
    void effectGrayBits(ProgressWord* progress = nullptr);
    void effectBlackAndWhite(int threshold, ProgressWord* progress = nullptr);
    void effectBlackAndWhite2(int threshold, ProgressWord* progress = nullptr);
    void effectFarbeSaturation(int percent, int mode, ProgressWord* progress = nullptr);
    void effectEinfärben(int red, int green, int blue, int brightness, int hold,
                         ProgressWord* progress = nullptr);
    void effectRandomiseBits(bool gray, ProgressWord* progress = nullptr);
    void effectFarbfläche(std::uint32_t colour, ProgressWord* progress = nullptr);
    void effectGrid(int xStep, int yStep, ProgressWord* progress = nullptr);
    void effectInvert(ProgressWord* progress = nullptr);
    static double GetIntensity(int red, int green, int blue) {
        return 0.3 * red + 0.59 * green + 0.11 * blue;
    }
    // Our metal tone: preset 1 gold, 2 ice, 3 steel; other presets do nothing.
    void effectMetallic(int preset, ProgressWord* progress = nullptr);

    // --- neighbourhood and remapping effects (effects_neighbourhood.cpp) ---
    void effectEmbossBits(ProgressWord* progress = nullptr);
    void effectSchärfenBits(ProgressWord* progress = nullptr);
    // With a feed, each row is asked for before the sharpening first reads it
    // and every row has been asked for at the end.
    void effectSchärfen2(int strength, ProgressWord* progress = nullptr, RowFeed* feed = nullptr);
    void effectWeichzeichnen(int unused, ProgressWord* progress = nullptr);
    void effectFrostglas(int strength, ProgressWord* progress = nullptr);
    void effect3D(int depth, ProgressWord* progress = nullptr);
    void effectWaves(int phase, int unused = 0, ProgressWord* progress = nullptr);
    void effectRippleBits(int vertical, int horizontal, ProgressWord* progress = nullptr);
    void effectAlphaBlending(int alpha, const brindle::Picture& second,
                             ProgressWord* progress = nullptr);
    void EffectReduceNoise(int radius, int low, int high, int method, bool mark,
                           ProgressWord* progress = nullptr);

    // --- frames (effects_frames.cpp) ----------------------------------------
    void effectRahmen(int light, int shadow, int thickness, ProgressWord* progress = nullptr);
    void effectButtonize(int light, int shadow, int thickness, ProgressWord* progress = nullptr);

    // --- geometry (effects_geometry.cpp) -------------------------------------
    void effectFitTo(int width, int height, ProgressWord* progress = nullptr);
    void effectVerkleinern(int width, int height, int xMargin, int yMargin,
                           ProgressWord* progress = nullptr);
    void effectCut(int left, int top, int right, int bottom, ProgressWord* progress = nullptr);
    void effectGröße(int width, int height, ProgressWord* progress = nullptr);
    void effectErweitern(int left, int top, int right, int bottom,
                         ProgressWord* progress = nullptr);
    // A picture no larger written over this one's own buffer: its buffer row
    // k reads this one's buffer row source[k] (-1: none) and `make` writes
    // its colour bytes; the pad bytes become zero. False, with nothing
    // changed, when a row would cover a row still to be read.
    using RowMaker = std::function<void(int k, std::uint8_t* out, const std::uint8_t* in)>;
    bool rebuildSmaller(int width, int height, const std::vector<int>& source, const RowMaker& make);
    void effectKachelnSelbst(int xRepeats, int yRepeats, ProgressWord* progress = nullptr);
    void effectKachel(int method, int keepSize, ProgressWord* progress = nullptr);
    // direction > 0 turns right (clockwise), otherwise left.
    void effectBildDrehen90(int direction, ProgressWord* progress = nullptr);
    void effectBildDrehen90power(int direction, cDIBSection& target,
                                 ProgressWord* progress = nullptr) const;

    // Random effects draw from one generator seeded from the clock; tests
    // may fix the seed.
    static void seedRandom(unsigned seed);

  private:
    int stride() const { return BytesPerScanLine(); }
    // Replaces every colour byte of every row by its table entry.
    void applyTable(const std::uint8_t (&table)[256], RowProgress& progress);
    // A nearest-pixel shrink done in the object's own buffer; false (and
    // nothing changed) when a row would overwrite a row still to be read.
    bool shrinkInPlace(int width, int height);
    // This object becomes `other` (used by the geometry effects).
    void takeFrom(cDIBSection& other);

    BitmapInfoHeader header_;
    std::vector<std::uint8_t> bits_;
    mutable ProgressWord progress_;
    std::shared_ptr<const std::string> exif_;
};

}  // namespace brindle
