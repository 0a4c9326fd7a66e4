#include "exif_test_files.h"

#include <exiv2/exiv2.hpp>

#include "image_compare.h"

namespace brindle::test {
namespace {

constexpr int kShort = 3, kLong = 4, kAscii = 2;

class TiffBytes {
  public:
    explicit TiffBytes(bool bigEndian) : big_(bigEndian) {}
    TiffBytes& u16(int v) {
        big_ ? b_.u16be(v) : b_.u16(v);
        return *this;
    }
    TiffBytes& u32(std::uint32_t v) {
        big_ ? b_.u32be(v) : b_.u32(v);
        return *this;
    }
    // One 12-byte IFD entry; a SHORT value stands in the first two bytes.
    TiffBytes& entry(int tag, int type, std::uint32_t count, std::uint32_t value) {
        u16(tag).u16(type).u32(count);
        if (type == kShort && count == 1) return u16(static_cast<int>(value)).u16(0);
        return u32(value);
    }
    TiffBytes& text(const std::string& s) {
        b_.text(s);
        return *this;
    }
    std::size_t size() const { return b_.size(); }
    const std::string& str() const { return b_.str(); }

  private:
    bool big_;
    Bytes b_;
};

}  // namespace

std::string exifTiff(const ExifSpec& spec) {
    const bool hasExifIfd = spec.pixelWidth > 0 && spec.pixelHeight > 0;
    const bool hasThumb = !spec.thumbnail.empty();
    const int ifd0Entries = 1 + (spec.orientation != 0) + hasExifIfd;
    const std::uint32_t makeAt = 8 + 2 + 12 * ifd0Entries + 4;
    const std::uint32_t makeLength = static_cast<std::uint32_t>(spec.make.size() + 1);
    const std::uint32_t exifIfdAt = makeAt + makeLength + (makeLength & 1);
    const std::uint32_t ifd1At = exifIfdAt + (hasExifIfd ? 2 + 24 + 4 : 0);
    const std::uint32_t thumbAt = ifd1At + 2 + 36 + 4;

    TiffBytes t(spec.bigEndian);
    t.text(spec.bigEndian ? "MM" : "II").u16(42).u32(8);
    t.u16(ifd0Entries).entry(0x010F, kAscii, makeLength, makeAt);
    if (spec.orientation != 0) t.entry(0x0112, kShort, 1, static_cast<std::uint32_t>(spec.orientation));
    if (hasExifIfd) t.entry(0x8769, kLong, 1, exifIfdAt);
    t.u32(hasThumb ? ifd1At : 0);
    t.text(spec.make).text(std::string(1 + (makeLength & 1), '\0'));
    if (hasExifIfd) {
        t.u16(2).entry(0xA002, kLong, 1, static_cast<std::uint32_t>(spec.pixelWidth));
        t.entry(0xA003, kLong, 1, static_cast<std::uint32_t>(spec.pixelHeight)).u32(0);
    }
    if (hasThumb) {
        t.u16(3).entry(0x0103, kShort, 1, 6).entry(0x0201, kLong, 1, thumbAt);
        t.entry(0x0202, kLong, 1, static_cast<std::uint32_t>(spec.thumbnail.size())).u32(0);
        t.text(spec.thumbnail);
    }
    return t.str();
}

std::string jpegWithExif(const std::string& jpeg, const std::string& tiff) {
    Bytes segment;
    segment.u8(0xFF).u8(0xE1).u16be(static_cast<int>(tiff.size() + 8));
    segment.text(std::string("Exif\0\0", 6)).text(tiff);
    return jpeg.substr(0, 2) + segment.str() + jpeg.substr(2);
}

ExifSeen exifSeenByExiv2(const std::string& path) {
    ExifSeen seen;
    auto image = Exiv2::ImageFactory::open(path);
    image->readMetadata();
    const Exiv2::ExifData& data = image->exifData();
    seen.hasExif = !data.empty();
    auto number = [&](const char* key) {
        const auto it = data.findKey(Exiv2::ExifKey(key));
        return it == data.end() ? 0L : it->toLong();
    };
    seen.orientation = number("Exif.Image.Orientation");
    seen.pixelWidth = number("Exif.Photo.PixelXDimension");
    seen.pixelHeight = number("Exif.Photo.PixelYDimension");
    const auto make = data.findKey(Exiv2::ExifKey("Exif.Image.Make"));
    if (make != data.end()) seen.make = make->toString();
    seen.hasThumbnail = Exiv2::ExifThumbC(data).copy().size_ > 0;
    return seen;
}

cDIBSection shownByHand(const cDIBSection& stored, int orientation) {
    const int w = stored.Width(), h = stored.Height();
    const bool side = orientation >= 5 && orientation <= 8;
    return makeDib(side ? h : w, side ? w : h, [&](int x, int y) {
        switch (orientation) {
            case 2: return pixelAt(stored, w - 1 - x, y);
            case 3: return pixelAt(stored, w - 1 - x, h - 1 - y);
            case 4: return pixelAt(stored, x, h - 1 - y);
            case 5: return pixelAt(stored, y, x);
            case 6: return pixelAt(stored, y, h - 1 - x);
            case 7: return pixelAt(stored, w - 1 - y, h - 1 - x);
            case 8: return pixelAt(stored, w - 1 - y, x);
            default: return pixelAt(stored, x, y);
        }
    });
}

cDIBSection turnedRightByHand(const cDIBSection& dib) { return shownByHand(dib, 6); }

}  // namespace brindle::test
