#include "image/picture_io.h"

#include <sys/stat.h>

#include "album/paths.h"
#include "image/bmp_reader.h"
#include "image/file_stamp.h"
#include "image/freeimage_io.h"
#include "image/jpeg_io.h"
#include "image/packed_dib.h"
#include "image/picture_guard.h"
#include "image/reduce.h"
#include "image/pcx_reader.h"
#include "image/tga_reader.h"

namespace brindle {
namespace {

// What a reader produced before any scaling.
struct Decoded {
    cDIBSection dib;
    PictureReader via = PictureReader::None;
    bool platform = false;  // drawn like the platform loader's pictures
    std::optional<ImageMessage> message;
};

// The load's message; the older program gave it for JPEG files, here any
// file that cannot be read or is refused for its size gives it.
ImageMessage loadFailure(const std::string& path, const std::string& description, Language lang) {
    const std::string two = std::string(kLineEnd) + kLineEnd;
    const std::string text = lang == Language::German
                                 ? "Laden des Bildes " + path + " mißlungen! " + two +
                                       "Beschreibung: " + description + two + "Quelle: Brindlesee"
                                 : "Loading of the picture " + path + " fault! " + two +
                                       "Description: " + description + two + "Source: Brindlesee";
    return {"Fehler", text, 0};
}

// Something stands at `path`, whatever it is; a FIFO or folder is then
// refused with the read's own message instead of silently.
bool pathExists(const std::string& path) {
    struct stat st {};
    return !path.empty() && ::stat(path.c_str(), &st) == 0;
}

bool readJpegGroup(const std::string& path, const std::string& bytes, int wantW, int wantH,
                   const ImageEnv& env, Decoded& out) {
    std::string jpegError, platformError;
    if (!env.jpegDctScaling) wantW = wantH = 0;
    if (decodeJpeg(bytes, out.dib, wantW, wantH, &jpegError)) return true;
    // The platform loader is more forgiving (colour spaces the fast decoder
    // will not convert); only when it fails too does the user hear of it.
    if (platformReadBytes(bytes, PlatformFormat::Jpeg, out.dib, env, &platformError)) {
        applyJpegOrientation(bytes, out.dib);
        return true;
    }
    out.message =
        loadFailure(path, platformError.empty() ? jpegError : platformError, env.language);
    return false;
}

// BMP files are ours to read; run-length ones and GIFs go to FreeImage.
bool readPlatformGroup(const std::string& bytes, PlatformFormat format, const ImageEnv& env,
                       Decoded& out) {
    std::string error;
    if (format == PlatformFormat::Bmp) {
        const BmpResult r = decodeBmp(bytes, out.dib, &error);
        if (r == BmpResult::Ok) {
            out.platform = true;
            return true;
        }
        if (r == BmpResult::Unsupported &&
            platformReadBytes(bytes, PlatformFormat::Bmp, out.dib, env, &error)) {
            out.platform = true;
            return true;
        }
    } else if (platformReadBytes(bytes, format, out.dib, env, &error)) {
        out.platform = true;
        return true;
    }
    logLine(env.log, "Module2 - Loadpicture - BMP -> Fehler beim laden: " + error);
    return freeImageReadBytes(bytes, out.dib, env);
}

bool decodeBytes(const std::string& path, const std::string& bytes, int wantW, int wantH,
                 const ImageEnv& env, Decoded& out) {
    switch (out.via) {
        case PictureReader::Jpeg:
            return readJpegGroup(path, bytes, wantW, wantH, env, out);
        case PictureReader::MultiPage:
            return freeImageMultiPageReadBytes(bytes, out.dib, env) ||
                   freeImageReadBytes(bytes, out.dib, env);
        case PictureReader::FreeImageSingle:
            return freeImageReadBytes(bytes, out.dib, env);
        case PictureReader::Platform:
            return readPlatformGroup(
                bytes, endsWithNoCase(path, ".gif") ? PlatformFormat::Gif : PlatformFormat::Bmp,
                env, out);
        case PictureReader::Icon:
            out.platform = true;
            return platformReadBytes(bytes, PlatformFormat::Icon, out.dib, env);
        case PictureReader::Tga: {
            LoadTGA tga;
            if (!tga.LoadFromBytes(bytes)) return false;
            out.dib = tga.pixels();
            return true;
        }
        case PictureReader::Pcx: {
            LoadPCX pcx;
            if (!pcx.LoadFromBytes(bytes)) return false;
            out.dib = pcx.pixels();
            return true;
        }
        case PictureReader::Metafile:
        case PictureReader::None:
            return false;
    }
    return false;
}

// Reads the file once, checks the size its header claims, then decodes
// from memory. A file that cannot be read or claims too large a picture
// gives the load's message naming the cause.
bool decode(const std::string& path, int wantW, int wantH, const ImageEnv& env, Decoded& out) {
    out.via = readerFor(path);
    if (out.via == PictureReader::None) return false;
    if (out.via == PictureReader::Metafile) {
        // No metafile renderer stands behind the core; such files load nothing.
        logLine(env.log, "Loadpicture: metafiles are not read: " + path);
        return false;
    }
    std::string bytes, why;
    if (!readPictureBytes(path, bytes, &why) || !pictureSizeAllowed(bytes, &why)) {
        out.message = loadFailure(path, why, env.language);
        return false;
    }
    return decodeBytes(path, bytes, wantW, wantH, env, out);
}

// A reduced photo keeps the EXIF block of the file it came from.
Picture withExifOf(const cDIBSection& source, Picture picture) {
    if (source.exif().empty() || !picture) return picture;
    cDIBSection dib = *picture.Handle();
    dib.setExif(source.sharedExif());
    return Picture::fromDib(std::move(dib));
}

// A picture asked for at another size: averaged where it is made smaller,
// so lines and edges do not turn jagged, by centre pixels where larger.
void drawInto(const cDIBSection& dib, PictureHolder& holder, int w, int h) {
    holder.AutoRedraw = true;
    holder.resize(w, h);
    smoothStretch(holder.hdc(), 0, 0, w, h, dib.hdc(), 0, 0, dib.Width(), dib.Height());
}

Picture scaleSection(const cDIBSection& dib, int w, int h) {
    cDIBSection sized;
    if (!smoothResize(dib, sized, w, h)) return {};
    return Picture::fromDib(std::move(sized));
}

// TGA and PCX draw at their natural size whatever was asked.
void drawNatural(const cDIBSection& dib, PictureHolder& holder) {
    holder.AutoRedraw = true;
    holder.resize(dib.Width(), dib.Height());
    dib.StretchPicture(holder.hdc(), 0, 0, dib.Width(), dib.Height(), 0, 0, dib.Width(),
                       dib.Height());
}

ImageStatus saveSection(const cDIBSection& dib, const std::string& path, int quality,
                        PictureWriter writer, const ImageEnv& env) {
    std::string error;
    bool ok = false;
    switch (writer) {
        case PictureWriter::Jpeg: {
            ImageStatus r = SavePictureAsJPG(dib.Picture(), path, quality, env);
            if (!r.ok && !r.message) r = SaveJPG(dib, path, quality, env);
            return r;
        }
        case PictureWriter::Bmp: {
            cDib file;
            ok = file.CreateFromDIBSection(dib) && file.WriteToFile(path, &error);
            break;
        }
        case PictureWriter::Png:
            ok = freeImageSave(dib, path, kFreeImagePng, &error);
            break;
        case PictureWriter::Tiff:
            ok = freeImageSave(dib, path, kFreeImageTiff, &error);
            break;
        case PictureWriter::None:
            return ImageStatus::failure();
    }
    if (!ok) logLine(env.log, "SaveDIBFile: " + path + ": " + error);
    return ok ? ImageStatus::success() : ImageStatus::failure();
}

}  // namespace

const std::vector<ReaderGroup>& readerTable() {
    static const std::vector<ReaderGroup> table = {
        {PictureReader::Jpeg, {".jpg", "jpeg"}},
        {PictureReader::MultiPage, {".tif", "tiff", ".mng"}},
        {PictureReader::FreeImageSingle,
         {".png", "wbmp", ".pbm", ".pgm", ".ppm", "mraw", ".psd", "jbig", ".jbg", ".ras", ".iff",
          ".lbm", ".cut", "*.pcd", "*.koala"}},
        {PictureReader::Platform, {".bmp", ".gif"}},
        {PictureReader::Icon, {".ico"}},
        {PictureReader::Metafile, {".wmf", ".emf"}},
        {PictureReader::Tga, {".tga"}},
        {PictureReader::Pcx, {".pcx"}},
    };
    return table;
}

std::string pictureKey(const std::string& path) {
    return asciiLower(path.size() <= 4 ? path : path.substr(path.size() - 4));
}

PictureReader readerFor(const std::string& path) {
    const std::string key = pictureKey(path);
    for (const ReaderGroup& group : readerTable())
        for (const std::string& k : group.keys)
            if (k == key) return group.reader;
    return PictureReader::None;
}

PictureWriter writerFor(const std::string& path, bool dibWriter) {
    const std::string key = pictureKey(path);
    if (key == ".jpg" || key == "jpeg" || (dibWriter && key == "&jpg")) return PictureWriter::Jpeg;
    if (key == ".bmp") return PictureWriter::Bmp;
    if (key == ".png") return PictureWriter::Png;
    if (key == ".tif" || key == "tiff") return PictureWriter::Tiff;
    return PictureWriter::None;
}

ImageStatus Loadpicture(PictureHolder& holder, const std::string& path, int& width, int& height,
                        int mode, const ImageEnv& env) {
    if (!pathExists(path)) return ImageStatus::failure();
    const bool scaled = width > 0 && height > 0;
    Decoded d;
    if (!decode(path, scaled ? width : 0, scaled ? height : 0, env, d))
        return ImageStatus::failure(d.message);
    holder.showFlag = mode == 0;
    holder.secondFlag = mode == 3;
    if (!scaled) {
        width = d.dib.Width();
        height = d.dib.Height();
        holder.picture = Picture::fromDib(std::move(d.dib));
        return ImageStatus::success();
    }
    switch (d.via) {
        case PictureReader::Tga:
        case PictureReader::Pcx:
            drawNatural(d.dib, holder);
            holder.picture = holder.Image();
            break;
        default:
            if (d.via == PictureReader::Jpeg || d.platform) {
                drawInto(d.dib, holder, width, height);
                holder.picture = withExifOf(d.dib, holder.Image());
            } else {
                holder.picture = scaleSection(d.dib, width, height);
            }
    }
    return holder.picture ? ImageStatus::success() : ImageStatus::failure();
}

std::optional<ImageMessage> pictureHint(const std::string& path) {
    if (readerFor(path) != PictureReader::Metafile || !pathExists(path)) return std::nullopt;
    return ImageMessage{"",
                        std::string("Das Format wmf oder emf wird von Netscape nicht unterstützt ") + kLineEnd +
                            "Wir empfehlen die Verwendung von JPEG oder PNG Bildern.",
                        2};
}

PictureFile LoadPictureFile(const std::string& path, const ImageEnv& env) {
    PictureFile out;
    if (!pathExists(path)) return out;
    out.hint = pictureHint(path);
    Decoded d;
    if (!decode(path, 0, 0, env, d)) {
        out.message = d.message;
        return out;
    }
    out.picture = Picture::fromDib(std::move(d.dib));
    return out;
}

ImageStatus SavePictureFile(const Picture& picture, const std::string& path, int quality,
                            const ImageEnv& env) {
    if (!picture) return ImageStatus::failure();
    return saveSection(*picture.Handle(), path, quality, writerFor(path, false), env);
}

ImageStatus SaveDIBFile(const cDIBSection& dib, const std::string& path, int quality,
                        const ImageEnv& env) {
    if (dib.empty()) return ImageStatus::failure();
    return saveSection(dib, path, quality, writerFor(path, true), env);
}

}  // namespace brindle
