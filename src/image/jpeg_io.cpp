#include "image/jpeg_io.h"

#include <turbojpeg.h>

#include <memory>

#include "album/paths.h"
#include "image/exif_orientation.h"
#include "image/file_stamp.h"
#include "image/freeimage_io.h"
#include "image/jpeg_markers.h"
#include "image/picture_limits.h"
#include "image/picture_turn.h"

namespace brindle {
namespace {

struct HandleCloser {
    void operator()(void* h) const {
        if (h) tjDestroy(h);
    }
};
using TjHandle = std::unique_ptr<void, HandleCloser>;

struct BufferFree {
    void operator()(unsigned char* p) const { tjFree(p); }
};
using TjBuffer = std::unique_ptr<unsigned char, BufferFree>;

void setError(std::string* error, const std::string& text) {
    if (error) *error = text;
}

const unsigned char* jpegBytes(const std::string& bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

int clampQuality(int q) { return q < 0 ? 0 : (q > 100 ? 100 : q); }

}  // namespace

JpegScale chooseJpegScale(int width, int height, int wantWidth, int wantHeight) {
    JpegScale best;
    if (wantWidth <= 0 || wantHeight <= 0 || (wantWidth >= width && wantHeight >= height))
        return best;
    int count = 0;
    const tjscalingfactor* factors = tjGetScalingFactors(&count);
    for (int i = 0; factors && i < count; ++i) {
        const JpegScale s{factors[i].num, factors[i].denom};
        if (s.num >= s.denom) continue;
        if (s.scaled(width) < wantWidth || s.scaled(height) < wantHeight) continue;
        if (static_cast<long long>(s.num) * best.denom < static_cast<long long>(best.num) * s.denom)
            best = s;
    }
    return best;
}

bool readJpegSize(const std::string& bytes, int& width, int& height, std::string* error) {
    TjHandle h(tjInitDecompress());
    if (!h) return setError(error, "no JPEG decoder"), false;
    int subsamp = 0, colourspace = 0;
    if (tjDecompressHeader3(h.get(), jpegBytes(bytes), bytes.size(), &width, &height, &subsamp,
                            &colourspace) != 0)
        return setError(error, tjGetErrorStr2(h.get())), false;
    return true;
}

bool decodeJpeg(const std::string& bytes, cDIBSection& dib, int wantWidth, int wantHeight,
                std::string* error) {
    TjHandle h(tjInitDecompress());
    if (!h) return setError(error, "no JPEG decoder"), false;
    int width = 0, height = 0, subsamp = 0, colourspace = 0;
    if (tjDecompressHeader3(h.get(), jpegBytes(bytes), bytes.size(), &width, &height, &subsamp,
                            &colourspace) != 0)
        return setError(error, tjGetErrorStr2(h.get())), false;
    std::string why;
    if (!plausiblePictureSize(width, height, bytes.size(), 24, &why))
        return setError(error, why), false;
    // The wanted size is upright; a picture on its side is decoded first.
    const std::string_view exif = findExifTiff(bytes);
    const int orientation = exifOrientation(exif);
    if (orientationSwapsSides(orientation)) std::swap(wantWidth, wantHeight);
    const JpegScale scale = chooseJpegScale(width, height, wantWidth, wantHeight);
    const int w = scale.scaled(width), hgt = scale.scaled(height);
    if (!dib.Create(w, hgt)) return setError(error, "out of memory"), false;
    // Rows go straight into the section, bottom-up, blue-green-red.
    if (tjDecompress2(h.get(), jpegBytes(bytes), bytes.size(), dib.DIBSectionBitsPtr(), w,
                      dib.BytesPerScanLine(), hgt, TJPF_BGR, TJFLAG_BOTTOMUP) != 0 &&
        tjGetErrorCode(h.get()) != TJERR_WARNING) {
        setError(error, tjGetErrorStr2(h.get()));
        dib.ClearUp();
        return false;
    }
    dib.setExif(std::string(exif));
    if (orientation != kOrientationUpright) {
        cDIBSection upright = turnedPicture(dib, turnForOrientation(orientation));
        if (upright.empty()) {
            setError(error, "out of memory");
            dib.ClearUp();
            return false;
        }
        dib = std::move(upright);
    }
    return true;
}

bool LoadJPG(cDIBSection& dib, const std::string& path, std::string* error, int wantWidth,
             int wantHeight) {
    const std::string lower = asciiLower(path);
    if (!endsWithNoCase(lower, "jpg") && !endsWithNoCase(lower, "jpeg")) return false;
    std::string bytes;
    if (!readPictureBytes(path, bytes, error)) return false;
    return decodeJpeg(bytes, dib, wantWidth, wantHeight, error);
}

bool encodeJpeg(const cDIBSection& dib, int quality, std::string& out, std::string* error,
                int subsampling) {
    if (dib.empty()) return setError(error, "no picture"), false;
    TjHandle h(tjInitCompress());
    if (!h) return setError(error, "no JPEG encoder"), false;
    const int q = clampQuality(quality);
    unsigned char* buffer = nullptr;
    unsigned long size = 0;
    const int rc = tjCompress2(h.get(), dib.DIBSectionBitsPtr(), dib.Width(),
                               dib.BytesPerScanLine(), dib.Height(), TJPF_BGR, &buffer, &size,
                               subsampling, q < 1 ? 1 : q, TJFLAG_BOTTOMUP);
    TjBuffer owned(buffer);
    if (rc != 0) return setError(error, tjGetErrorStr2(h.get())), false;
    out.assign(reinterpret_cast<const char*>(buffer), size);
    // A photo keeps its EXIF, now saying it stands upright.
    if (!dib.exif().empty())
        out = replaceExifBlock(out, exifForUpright(dib.exif(), dib.Width(), dib.Height()));
    return true;
}

ImageStatus SaveJPG(const cDIBSection& dib, const std::string& path, int quality,
                    const ImageEnv& env) {
    {
        TjHandle probe(tjInitCompress());
        if (!probe)
            return ImageStatus::failure(
                ImageMessage{".mIntelJPEGLibrary", "Failed to initialise the IJL library: -1", 0});
    }
    const FileStamp old = readFileStamp(path);
    std::string bytes, error;
    if (!encodeJpeg(dib, quality, bytes, &error) ||
        !writeBytesAtomic(path, bytes.data(), bytes.size(), &error)) {
        logLine(env.log, "SaveJPG: " + path + ": " + error);
        return ImageStatus::failure();
    }
    if (old.exists) applyFileStamp(path, old);
    return ImageStatus::success();
}

bool hasEncoderFor(const std::string& mimeType) {
    if (asciiLower(mimeType) != "image/jpeg") return false;
    TjHandle probe(tjInitCompress());
    return probe != nullptr;
}

Picture LoadPicturePlus(const std::string& path, const ImageEnv& env) {
    cDIBSection dib;
    if (!freeImageSingleRead(path, dib, env)) return {};
    return Picture::fromDib(std::move(dib));
}

ImageStatus SavePictureAsJPG(const Picture& picture, const std::string& path, int quality,
                             const ImageEnv& env) {
    if (!hasEncoderFor("image/jpeg"))
        return ImageStatus::failure(
            ImageMessage{"Encoder Error",
                         tr(env.language, "GDI Plus: Konnte keinen passenden Encoder ermitteln.",
                            "GDI Plus: Don't found an encoder"),
                         0});
    if (!picture) return ImageStatus::failure();
    std::string bytes, error;
    if (!encodeJpeg(*picture.Handle(), clampQuality(quality), bytes, &error) ||
        !writeBytesAtomic(path, bytes.data(), bytes.size(), &error)) {
        logLine(env.log, "SavePictureAsJPG: " + path + ": " + error);
        return ImageStatus::failure();
    }
    return ImageStatus::success();
}

}  // namespace brindle
