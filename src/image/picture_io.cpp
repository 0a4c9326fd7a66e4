#include "image/picture_io.h"

#include "album/paths.h"
#include "image/file_stamp.h"
#include "image/freeimage_io.h"
#include "image/jpeg_io.h"
#include "image/packed_dib.h"
#include "image/pcx_reader.h"
#include "image/rounding.h"
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

ImageMessage jpegFailure(const std::string& path, const std::string& description, Language lang) {
    const std::string two = std::string(kLineEnd) + kLineEnd;
    const std::string text = lang == Language::German
                                 ? "Laden des Bildes " + path + " mißlungen! " + two +
                                       "Beschreibung: " + description + two + "Quelle: Brindlesee"
                                 : "Loading of the picture " + path + " fault! " + two +
                                       "Description: " + description + two + "Source: Brindlesee";
    return {"Fehler", text, 0};
}

bool readJpegGroup(const std::string& path, int wantW, int wantH, const ImageEnv& env,
                   Decoded& out) {
    std::string jpegError, platformError;
    if (!env.jpegDctScaling) wantW = wantH = 0;
    if (LoadJPG(out.dib, path, &jpegError, wantW, wantH)) return true;
    // The platform loader is more forgiving (colour spaces the fast decoder
    // will not convert); only when it fails too does the user hear of it.
    if (platformRead(path, PlatformFormat::Jpeg, out.dib, env, &platformError)) {
        applyJpegOrientation(path, out.dib);
        return true;
    }
    out.message =
        jpegFailure(path, platformError.empty() ? jpegError : platformError, env.language);
    return false;
}

bool readPlatformGroup(const std::string& path, PlatformFormat format, const ImageEnv& env,
                       Decoded& out) {
    std::string error;
    if (platformRead(path, format, out.dib, env, &error)) {
        out.platform = true;
        return true;
    }
    logLine(env.log, "Module2 - Loadpicture - BMP -> Fehler beim laden: " + error);
    return freeImageSingleRead(path, out.dib, env);
}

bool decode(const std::string& path, int wantW, int wantH, const ImageEnv& env, Decoded& out) {
    out.via = readerFor(path);
    switch (out.via) {
        case PictureReader::Jpeg:
            return readJpegGroup(path, wantW, wantH, env, out);
        case PictureReader::MultiPage:
            return freeImageMultiPageRead(path, out.dib, env) ||
                   freeImageSingleRead(path, out.dib, env);
        case PictureReader::FreeImageSingle:
            return freeImageSingleRead(path, out.dib, env);
        case PictureReader::Platform:
            return readPlatformGroup(
                path, endsWithNoCase(path, ".gif") ? PlatformFormat::Gif : PlatformFormat::Bmp, env,
                out);
        case PictureReader::Icon:
            out.platform = true;
            return platformRead(path, PlatformFormat::Icon, out.dib, env);
        case PictureReader::Metafile:
            // No metafile renderer stands behind the core; such files load nothing.
            logLine(env.log, "Loadpicture: metafiles are not read: " + path);
            return false;
        case PictureReader::Tga: {
            LoadTGA tga;
            if (!tga.Load(path)) return false;
            out.dib = tga.pixels();
            return true;
        }
        case PictureReader::Pcx: {
            LoadPCX pcx;
            if (!pcx.Load(path)) return false;
            out.dib = pcx.pixels();
            return true;
        }
        case PictureReader::None:
            return false;
    }
    return false;
}

// JPEG: one stretch, or two through a third of the size for big reductions.
void scaleJpeg(const cDIBSection& dib, PictureHolder& holder, int w, int h) {
    holder.AutoRedraw = true;
    holder.resize(w, h);
    if (!needsTwoStageReduction(dib.Width(), dib.Height(), w, h)) {
        dib.StretchPicture(holder.hdc(), 0, 0, w, h, 0, 0, dib.Width(), dib.Height());
        return;
    }
    PictureHolder thumb;  // the helper holder of the thumbnail maker
    thumb.AutoRedraw = true;
    const int tw = std::max(1, roundEven(dib.Width() / 3.0)),
              th = std::max(1, roundEven(dib.Height() / 3.0));
    thumb.resize(tw, th);
    dib.StretchPicture(thumb.hdc(), 0, 0, tw, th, 0, 0, dib.Width(), dib.Height());
    thumb.surface().StretchPicture(holder.hdc(), 0, 0, w, h, 0, 0, tw, th);
}

// FreeImage groups: sampling when smaller both ways, else one stretch.
Picture scaleSection(cDIBSection& dib, int w, int h) {
    if (w < dib.Width() && h < dib.Height()) {
        dib.effectVerkleinern(w, h, 0, 0);
        return Picture::fromDib(std::move(dib));
    }
    cDIBSection sized;
    if (!sized.Create(w, h)) return {};
    dib.StretchPicture(sized.hdc(), 0, 0, w, h, 0, 0, dib.Width(), dib.Height());
    return Picture::fromDib(std::move(sized));
}

// A reduced photo keeps the EXIF block of the file it came from.
Picture withExifOf(const cDIBSection& source, Picture picture) {
    if (source.exif().empty() || !picture) return picture;
    cDIBSection dib = *picture.Handle();
    dib.setExif(source.sharedExif());
    return Picture::fromDib(std::move(dib));
}

void drawInto(const cDIBSection& dib, PictureHolder& holder, int w, int h) {
    holder.AutoRedraw = true;
    holder.resize(w, h);
    dib.StretchPicture(holder.hdc(), 0, 0, w, h, 0, 0, dib.Width(), dib.Height());
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

bool needsTwoStageReduction(int sourceWidth, int sourceHeight, int width, int height) {
    return static_cast<long long>(sourceHeight) > 10LL * height ||
           static_cast<long long>(sourceWidth) > 10LL * width;
}

ImageStatus Loadpicture(PictureHolder& holder, const std::string& path, int& width, int& height,
                        int mode, const ImageEnv& env) {
    if (!fileExists(path)) return ImageStatus::failure();
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
        case PictureReader::Jpeg:
            scaleJpeg(d.dib, holder, width, height);
            holder.picture = withExifOf(d.dib, holder.Image());
            break;
        case PictureReader::Tga:
        case PictureReader::Pcx:
            // These draw at their natural size whatever was asked.
            drawInto(d.dib, holder, d.dib.Width(), d.dib.Height());
            holder.picture = holder.Image();
            break;
        default:
            if (d.platform) {
                drawInto(d.dib, holder, width, height);
                holder.picture = holder.Image();
            } else {
                holder.picture = scaleSection(d.dib, width, height);
            }
    }
    return holder.picture ? ImageStatus::success() : ImageStatus::failure();
}

PictureFile LoadPictureFile(const std::string& path, const ImageEnv& env) {
    PictureFile out;
    if (!fileExists(path)) return out;
    if (readerFor(path) == PictureReader::Metafile)
        out.hint = ImageMessage{
            "",
            std::string("Das Format wmf oder emf wird von Netscape nicht unterstützt ") + kLineEnd +
                "Wir empfehlen die Verwendung von JPEG oder PNG Bildern.",
            2};
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
