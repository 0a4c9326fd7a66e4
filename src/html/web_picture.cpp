#include "html/web_picture.h"

#include <FreeImage.h>

#include <cmath>
#include <filesystem>
#include <string_view>

#include "album/paths.h"
#include "html/html_text.h"
#include "image/dib_section.h"
#include "image/file_stamp.h"
#include "image/image_info.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image/reduce.h"

namespace brindle::html {

namespace fs = std::filesystem;

namespace {

// The source at about the size it is wanted in; JPEGs decode at a reduced
// DCT scale where that still gives enough pixels.
bool loadSource(const std::string& path, int wantW, int wantH, cDIBSection& out) {
    if (endsWithNoCase(path, "jpg") || endsWithNoCase(path, "jpeg")) {
        if (LoadJPG(out, path, nullptr, wantW, wantH)) return true;
    }
    PictureFile file = LoadPictureFile(path);
    if (!file.picture) return false;
    out = *file.picture.Handle();
    return true;
}

// Places `src` into the rectangle (x, y, w, h) of `dst` by the rules of the
// animation: the lake keeps the upper part for the reflection below, the
// panorama strip keeps its aspect at the box's height, all else is stretched.
// Reductions average the source (smoothStretch), so web pictures keep thin
// lines and edges clean.
void placePicture(cDIBSection& dst, const cDIBSection& src, int x, int y, int w, int h,
                  const std::vector<std::string>& anim) {
    const Surface d = dst.hdc();
    const Surface s = src.hdc();
    if (anim[0] == "Lake" && !anim[2].empty() && anim[2] != "None") {
        const int rows = static_cast<int>(src.Height() * numericValue(anim[2]) / 100 + 2);
        smoothStretch(d, x, y, w, h / 2 + 2, s, 0, 0, src.Width(), std::min(rows, src.Height()));
    } else if (anim[0] == "Pano") {
        const int scaledW = static_cast<int>(std::min<double>(100000000.0, 1.0 * src.Width() * h / src.Height()));
        cDIBSection scaled;
        if (!scaled.Create(std::max(1, scaledW), h)) return;
        smoothStretch(scaled.hdc(), 0, 0, scaled.Width(), h, s, 0, 0, src.Width(), src.Height());
        bitBlt(d, x, y, w, h, scaled.hdc(), 0, 0, SRCCOPY);
    } else {
        smoothStretch(d, x, y, w, h, s, 0, 0, src.Width(), src.Height());
    }
}

// Fills the whole target with the texture tiled, or with the colour.
void fillGround(cDIBSection& dst, const std::vector<std::string>& frame) {
    const std::string& texture = frame[4];
    cDIBSection tile;
    if (!texture.empty() && texture != "None" && fs::exists(texture) && loadSource(texture, 0, 0, tile)) {
        for (int ty = 0; ty < dst.Height(); ty += tile.Height())
            for (int tx = 0; tx < dst.Width(); tx += tile.Width())
                bitBlt(dst.hdc(), tx, ty, tile.Width(), tile.Height(), tile.hdc(), 0, 0, SRCCOPY);
        return;
    }
    dst.effectFarbfläche(static_cast<std::uint32_t>(numericValue(frame[3])));
}

// Draws `dib` turned by `degrees` about its centre into a w x h picture on
// transparent ground and writes it as PNG.
bool saveTurnedPng(const cDIBSection& dib, int w, int h, int degrees, const std::string& path) {
    FIBITMAP* out = FreeImage_Allocate(w, h, 32, FI_RGBA_RED_MASK, FI_RGBA_GREEN_MASK, FI_RGBA_BLUE_MASK);
    if (!out) return false;
    const double a = degrees * 3.14159265358979 / 180, c = std::cos(a), s = std::sin(a);
    const double cx = w / 2.0, cy = h / 2.0, sx0 = dib.Width() / 2.0, sy0 = dib.Height() / 2.0;
    // The turned picture keeps its size and is scaled down to fit the box.
    const double bw = std::fabs(dib.Width() * c) + std::fabs(dib.Height() * s);
    const double bh = std::fabs(dib.Width() * s) + std::fabs(dib.Height() * c);
    const double scale = std::min(w / bw, h / bh);
    const Surface src = dib.hdc();
    for (int y = 0; y < h; ++y) {
        BYTE* row = FreeImage_GetScanLine(out, h - 1 - y);
        for (int x = 0; x < w; ++x) {
            const double dx = (x + 0.5 - cx) / scale, dy = (y + 0.5 - cy) / scale;
            const int px = static_cast<int>(std::floor(c * dx + s * dy + sx0));
            const int py = static_cast<int>(std::floor(-s * dx + c * dy + sy0));
            BYTE* o = row + 4 * x;
            if (px < 0 || py < 0 || px >= dib.Width() || py >= dib.Height()) {
                o[FI_RGBA_ALPHA] = 0;
                continue;
            }
            const std::uint8_t* p = src.row(py) + 3 * px;
            o[FI_RGBA_BLUE] = p[0];
            o[FI_RGBA_GREEN] = p[1];
            o[FI_RGBA_RED] = p[2];
            o[FI_RGBA_ALPHA] = 255;
        }
    }
    // Encoded in memory and written like every other save: through a link
    // to its file, keeping the permissions of the file it replaces.
    FIMEMORY* memory = FreeImage_OpenMemory();
    BYTE* bytes = nullptr;
    DWORD size = 0;
    bool ok = memory && FreeImage_SaveToMemory(FIF_PNG, out, memory, 0) &&
              FreeImage_AcquireMemory(memory, &bytes, &size);
    if (ok) ok = writeBytesAtomic(path, bytes, size);
    if (memory) FreeImage_CloseMemory(memory);
    FreeImage_Unload(out);
    return ok;
}

}  // namespace

bool speichereWebBild(const WebPicture& p, std::string& error) {
    const auto frame = specTokens(p.frameSpec), anim = specTokens(p.animationSpec);
    const bool png = endsWithNoCase(p.target, ".png");
    int w = p.width, h = p.height;
    if (png && p.rotation != 0) {
        if (p.boxWidth != 0 && p.boxHeight != 0) {
            w = p.boxWidth;
            h = p.boxHeight;
        } else {
            w = static_cast<int>(w * 0.6);
            h = static_cast<int>(h * 0.6);
        }
    }
    const int quality = p.quality == 0 ? 90 : p.quality;
    if (!fs::exists(p.source)) return true;  // nothing happens for a missing source
    cDIBSection source;
    if (!loadSource(p.source, w, h, source)) {
        error = unreadableSourceError(p.source);
        return false;
    }
    if (w <= 0 || h <= 0) {
        w = source.Width();
        h = source.Height();
    }
    // A scrolling strip keeps the whole panorama at the box's height.
    if (anim[0] == "Pano" && !hasFrame(frame))
        w = std::max(1, static_cast<int>(1.0 * source.Width() * h / source.Height()));
    cDIBSection target;
    if (!target.Create(w, h)) {
        error = "out of memory";
        return false;
    }
    if (hasFrame(frame)) {
        const int t = static_cast<int>(numericValue(frame[0]));
        fillGround(target, frame);
        target.effectRahmen(static_cast<int>(numericValue(frame[1])), static_cast<int>(numericValue(frame[2])), t);
        placePicture(target, source, t, t, std::max(1, w - 2 * t), std::max(1, h - 2 * t), anim);
    } else {
        placePicture(target, source, 0, 0, w, h, anim);
    }
    bool ok = false;
    if (endsWithNoCase(p.target, ".jpg") || endsWithNoCase(p.target, "jpeg")) {
        ok = static_cast<bool>(SaveJPG(target, p.target, quality));
    } else if (png) {
        ok = saveTurnedPng(target, w, h, p.rotation, p.target);
    } else if (endsWithNoCase(p.target, ".bmp")) {
        // Bitmaps go through the JPEG writer too, a plain bitmap as fallback.
        ok = static_cast<bool>(SaveJPG(target, p.target, quality)) || static_cast<bool>(SaveDIBFile(target, p.target, quality));
    } else {
        return true;  // other types are not written
    }
    if (!ok) error = "write failed";
    return ok;
}

namespace {
constexpr std::string_view kUnreadableSource = "cannot load ";
}  // namespace

std::string unreadableSourceError(const std::string& source) { return std::string(kUnreadableSource) + source; }

bool isUnreadableSourceError(const std::string& error) { return error.rfind(kUnreadableSource, 0) == 0; }

PictureServices defaultPictureServices() {
    PictureServices s;
    s.writeWebPicture = speichereWebBild;
    s.pictureSize = [](const std::string& path, int& width, int& height) {
        CImageInfo info;
        if (!info.ReadImageInfo(path)) return false;
        width = info.Width;
        height = info.Height;
        return true;
    };
    return s;
}

}  // namespace brindle::html
