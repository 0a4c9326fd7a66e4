#include "image/dib_section.h"

#include <chrono>
#include <cstring>
#include <new>
#include <random>
#include <utility>

#include "image/picture_holder.h"
#include "image/rounding.h"

namespace brindle {
namespace {

// One section never holds more than this; larger requests fail like a
// failed allocation, long before an int could overflow.
constexpr long long kMaxSectionBytes = 1LL << 31;

}  // namespace

// --- Picture ------------------------------------------------------------------

Picture Picture::fromDib(const cDIBSection& dib) {
    Picture p;
    if (!dib.empty()) p.dib_ = std::make_shared<const cDIBSection>(dib);
    return p;
}

Picture Picture::fromDib(cDIBSection&& dib) {
    Picture p;
    if (!dib.empty()) p.dib_ = std::make_shared<const cDIBSection>(std::move(dib));
    return p;
}

int Picture::Width() const { return dib_ ? dib_->Width() : 0; }
int Picture::Height() const { return dib_ ? dib_->Height() : 0; }

// --- the section --------------------------------------------------------------

cDIBSection::cDIBSection(cDIBSection&& other) noexcept
    : header_(other.header_),
      bits_(std::move(other.bits_)),
      progress_(other.progress_),
      exif_(std::move(other.exif_)) {
    other.ClearUp();
}

cDIBSection& cDIBSection::operator=(cDIBSection&& other) noexcept {
    if (this != &other) {
        header_ = other.header_;
        bits_ = std::move(other.bits_);
        progress_ = other.progress_;
        exif_ = std::move(other.exif_);
        other.ClearUp();
    }
    return *this;
}

bool cDIBSection::CreateDIB(int width, int height, std::vector<std::uint8_t>& bits,
                            BitmapInfoHeader& header) {
    if (width <= 0 || height <= 0) return false;
    const long long size = static_cast<long long>(BytesPerScanLine(width)) * height;
    if (width > (1 << 28) || size > kMaxSectionBytes) return false;
    try {
        bits.assign(static_cast<std::size_t>(size), 0);
    } catch (const std::bad_alloc&) {
        return false;
    }
    header = BitmapInfoHeader{};
    header.width = width;
    header.height = height;
    header.sizeImage = static_cast<std::uint32_t>(size);
    return true;
}

bool cDIBSection::Create(int width, int height) {
    ClearUp();
    std::vector<std::uint8_t> bits;
    BitmapInfoHeader header;
    if (!CreateDIB(width, height, bits, header)) return false;
    bits_ = std::move(bits);
    header_ = header;
    return true;
}

void cDIBSection::ClearUp() {
    std::vector<std::uint8_t>().swap(bits_);
    header_ = BitmapInfoHeader{};
}

Surface cDIBSection::hdc() const {
    if (empty()) return {};
    return {const_cast<std::uint8_t*>(bits_.data()), header_.width, header_.height,
            BytesPerScanLine()};
}

const std::string& cDIBSection::exif() const {
    static const std::string none;
    return exif_ ? *exif_ : none;
}

void cDIBSection::setExif(std::string block) {
    exif_ = block.empty() ? nullptr : std::make_shared<const std::string>(std::move(block));
}

void cDIBSection::takeFrom(cDIBSection& other) {
    header_ = other.header_;
    bits_ = std::move(other.bits_);
    other.ClearUp();
}

// --- pictures in and out ------------------------------------------------------

bool cDIBSection::CreateFromPicture(const brindle::Picture& picture) {
    return PictureFromHandle(picture.Handle());
}

bool cDIBSection::PictureFromHandle(const cDIBSection* handle) {
    if (!handle || handle->empty()) return false;
    if (handle == this) return true;
    if (!Create(handle->Width(), handle->Height())) return false;
    exif_ = handle->exif_;
    return LoadPictureBlt(handle->hdc(), 0, 0, -1, -1, SRCCOPY);
}

bool cDIBSection::CopyPicture(const PictureHolder& holder) {
    const cDIBSection& surface = holder.surface();
    if (surface.empty()) return false;
    if (!Create(surface.Width(), surface.Height())) return false;
    for (int r = 0; r < Height(); ++r)
        std::memcpy(rowBits(r), surface.rowBits(r), static_cast<std::size_t>(stride()));
    return true;
}

brindle::Picture cDIBSection::Picture() const { return brindle::Picture::fromDib(*this); }

// --- blits --------------------------------------------------------------------

bool cDIBSection::LoadPictureBlt(const Surface& src, int sx, int sy, int w, int h,
                                 std::uint32_t rop) {
    if (w == -1) w = Width();
    if (h == -1) h = Height();
    return bitBlt(hdc(), 0, 0, w, h, src, sx, sy, rop);
}

bool cDIBSection::PaintPicture(const Surface& dst, int x, int y, int w, int h, int sx, int sy,
                               std::uint32_t rop) const {
    if (w == -1) w = Width();
    if (h == -1) h = Height();
    if (w < 0 || h < 0)
        return stretchBlt(dst, x, y, w, h, hdc(), sx, sy, w < 0 ? -w : w, h < 0 ? -h : h, rop);
    return bitBlt(dst, x, y, w, h, hdc(), sx, sy, rop);
}

bool cDIBSection::StretchPicture(const Surface& dst, int x, int y, int w, int h, int sx, int sy,
                                 int sw, int sh, std::uint32_t rop) const {
    return stretchBlt(dst, x, y, w, h, hdc(), sx, sy, sw, sh, rop);
}

bool cDIBSection::StretchLoadPicture(const Surface& src, int x, int y, int w, int h, int sx, int sy,
                                     int sw, int sh, std::uint32_t rop) {
    return stretchBlt(hdc(), x, y, w, h, src, sx, sy, sw, sh, rop);
}

ImageStatus cDIBSection::CopyToClipboard(bool asDib, const ClipboardSink& clipboard) const {
    if (asDib)
        return ImageStatus::failure(ImageMessage{
            "", "I don't know how to put a DIB on the clipboard! Copy as bitmap instead!!!", 0});
    if (empty() || !clipboard) return ImageStatus::failure();
    return clipboard(Picture()) ? ImageStatus::success() : ImageStatus::failure();
}

// --- resampling ---------------------------------------------------------------

cDIBSection cDIBSection::Resample(int newHeight, int newWidth) const {
    cDIBSection out;
    if (empty() || !out.Create(newWidth, newHeight)) return out;
    if (newWidth == Width() && newHeight == Height()) {
        out.LoadPictureBlt(hdc(), 0, 0, -1, -1, SRCCOPY);
        return out;
    }
    // A one-pixel side has no second sample to spread over; it takes the first.
    const double xScale = newWidth > 1 ? static_cast<double>(Width() - 1) / (newWidth - 1) : 0.0;
    const double yScale = newHeight > 1 ? static_cast<double>(Height() - 1) / (newHeight - 1) : 0.0;
    const int lastX = Width() - 1, lastY = Height() - 1;
    std::vector<int> ix(static_cast<std::size_t>(newWidth));
    std::vector<double> fx(static_cast<std::size_t>(newWidth));
    for (int x = 0; x < newWidth; ++x) {
        const double sx = x * xScale;
        ix[x] = static_cast<int>(sx);
        fx[x] = sx - ix[x];
    }
    for (int y = 0; y < newHeight; ++y) {
        const double sy = y * yScale;
        const int iy = static_cast<int>(sy);
        const double fy = sy - iy;
        const std::uint8_t* r0 = rowBits(iy);
        const std::uint8_t* r1 = rowBits(iy < lastY ? iy + 1 : iy);
        std::uint8_t* dst = out.rowBits(y);
        for (int x = 0; x < newWidth; ++x) {
            const int c0 = ix[x] * 3;
            const int c1 = (ix[x] < lastX ? ix[x] + 1 : ix[x]) * 3;
            const double f = fx[x];
            for (int ch = 0; ch < 3; ++ch) {
                const int a = roundEven((1 - fy) * r0[c0 + ch] + fy * r1[c0 + ch]);
                const int b = roundEven((1 - fy) * r0[c1 + ch] + fy * r1[c1 + ch]);
                dst[x * 3 + ch] = roundClamp((1 - f) * a + f * b);
            }
        }
    }
    return out;
}

}  // namespace brindle
