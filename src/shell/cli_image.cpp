// convert, imageinfo and rotate: pictures through the image core.
#include <filesystem>
#include <iostream>

#include "album/paths.h"
#include "image/file_stamp.h"
#include "image/gif_writer.h"
#include "image/image_info.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "shell/cli_commands.h"
#include "shell/cli_text.h"

namespace brindle::cli {
namespace {

const ImageEnv kEnv{Language::English, {}, true};

bool parseSize(const std::string& s, int& w, int& h) {
    const auto x = s.find_first_of("xX");
    return x != std::string::npos && parseInt(s.substr(0, x), w) && parseInt(s.substr(x + 1), h) &&
           w > 0 && h > 0;
}

int failStatus(const ImageStatus& status, const std::string& fallback) {
    return fail(status.message ? oneLine(status.message->text) : fallback);
}

bool writable(const std::string& path) {
    return writerFor(path, true) != PictureWriter::None || pictureKey(path) == ".gif";
}

// Writes through SaveDIBFile's table; GIF through our GIF writer.
ImageStatus writePicture(const cDIBSection& dib, const std::string& path, int quality) {
    if (pictureKey(path) == ".gif") {
        std::string error;
        if (GIF::SaveGIF(dib, path, false, 0, &error)) return ImageStatus::success();
        return ImageStatus::failure(ImageMessage{"", "cannot write " + path + ": " + error, 0});
    }
    return SaveDIBFile(dib, path, quality, kEnv);
}

const char* kWritableTypes = "(.jpg, .jpeg, .bmp, .png, .tif, .tiff or .gif)";

}  // namespace

int convert(const Args& args) {
    const char* usage = "usage: brindlesee-cli convert IN OUT [--quality Q] [--size WxH]";
    if (args.size() < 2) return fail(usage);
    int quality = 90, width = 0, height = 0;
    for (std::size_t i = 2; i < args.size(); i += 2) {
        if (i + 1 >= args.size()) return fail(usage);
        if (args[i] == "--quality") {
            if (!parseInt(args[i + 1], quality) || quality < 0 || quality > 100)
                return fail("quality must be a number from 0 to 100: " + args[i + 1]);
        } else if (args[i] == "--size") {
            if (!parseSize(args[i + 1], width, height))
                return fail("size must be WIDTHxHEIGHT, both above 0: " + args[i + 1]);
        } else {
            return fail(std::string("unknown option: ") + args[i]);
        }
    }
    const std::string& in = args[0];
    const std::string& out = args[1];
    // A FIFO, device or folder goes on to the load, which names what it is.
    std::error_code ec;
    if (!std::filesystem::exists(in, ec)) return fail("file not found: " + in);
    if (readerFor(in) == PictureReader::None)
        return fail("not a picture type that can be read: " + in);
    if (!writable(out))
        return fail(std::string("cannot write this picture type: ") + out + " " + kWritableTypes);
    PictureHolder holder;
    const ImageStatus loaded = Loadpicture(holder, in, width, height, 0, kEnv);
    if (!loaded || !holder.picture) return failStatus(loaded, "cannot read the picture: " + in);
    const ImageStatus saved = writePicture(*holder.picture.Handle(), out, quality);
    return saved ? 0 : failStatus(saved, "cannot write the picture: " + out);
}

int imageinfo(const Args& args) {
    if (args.size() != 1) return fail("usage: brindlesee-cli imageinfo FILE");
    if (!fileExists(args[0])) return fail("file not found: " + args[0]);
    CImageInfo info;
    if (!info.ReadImageInfo(args[0]))
        return fail("not a PNG, GIF, JPEG or BMP picture: " + args[0]);
    std::cout << "{\n  \"width\": " << info.Width << ",\n  \"height\": " << info.Height
              << ",\n  \"depth\": " << info.Depth << ",\n  \"imageType\": " << info.ImageType
              << "\n}\n";
    return 0;
}

int rotate(const Args& args) {
    if (args.size() != 2 || (args[0] != "left" && args[0] != "right"))
        return fail("usage: brindlesee-cli rotate left|right FILE");
    const bool right = args[0] == "right";
    const std::string& path = args[1];
    if (!fileExists(path)) return fail("file not found: " + path);
    if (readerFor(path) == PictureReader::Jpeg) {
        std::string error;
        if (!SaveAsRotatedJpgLossless(path, path, right ? kJpegRotate90 : kJpegRotate270, &error))
            return fail("cannot turn " + path + ": " + error);
        return 0;
    }
    if (!writable(path))
        return fail(std::string("cannot write this picture type: ") + path + " " + kWritableTypes);
    const PictureFile file = LoadPictureFile(path, kEnv);
    if (!file.picture)
        return fail(file.message ? oneLine(file.message->text)
                                 : "cannot read the picture: " + path);
    cDIBSection dib = *file.picture.Handle();
    dib.effectBildDrehen90(right ? 1 : -1);
    const FileStamp stamp = readFileStamp(path);
    const ImageStatus saved = writePicture(dib, path, 90);
    if (!saved) return failStatus(saved, "cannot write the picture: " + path);
    applyFileStamp(path, stamp);
    return 0;
}

}  // namespace brindle::cli
