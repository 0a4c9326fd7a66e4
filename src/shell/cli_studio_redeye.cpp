// redeye: red-eye correction of one picture, by clicks or by a box.
#include <iostream>
#include <optional>
#include <vector>

#include "image/file_stamp.h"
#include "image/picture_io.h"
#include "shell/cli_commands.h"
#include "shell/cli_text.h"
#include "studio/red_eye.h"

namespace brindle::cli {
namespace {

const char* kUsage =
    "usage: brindlesee-cli redeye PICTURE --at X,Y [--at X,Y] [--sensitivity T] [--width W]\n"
    "                      | --box X,Y,W,H [--red N] [--other N] [--bright N] [--grey]  [-o OUT]";

// "A,B,..." with exactly `count` whole numbers.
bool parseList(const std::string& s, std::size_t count, std::vector<int>& out) {
    out.clear();
    std::size_t start = 0;
    while (true) {
        const std::size_t comma = s.find(',', start);
        int v = 0;
        if (!parseInt(s.substr(start, comma - start), v)) return false;
        out.push_back(v);
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    return out.size() == count;
}

struct Request {
    std::string picture;
    std::string out;
    std::vector<std::pair<int, int>> clicks;
    std::optional<std::vector<int>> box;  // x, y, w, h
    std::optional<int> sensitivity, width, red, other, bright;
    bool grey = false;
};

// A number option in [low, high]; an empty string when it is fine.
std::string readNumber(const std::string& name, const std::string& text, int low, int high,
                       std::optional<int>& value) {
    int v = 0;
    if (!parseInt(text, v) || v < low || v > high)
        return name + " must be a number from " + std::to_string(low) + " to " +
               std::to_string(high) + ": " + text;
    value = v;
    return {};
}

std::string parse(const Args& args, Request& r) {
    if (args.empty() || args[0].starts_with("-")) return kUsage;
    r.picture = args[0];
    for (std::size_t i = 1; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--grey") {
            r.grey = true;
            continue;
        }
        if (i + 1 >= args.size()) return a.starts_with("-") ? a + " needs a value" : kUsage;
        const std::string& v = args[++i];
        std::vector<int> list;
        std::string error;
        if (a == "--at") {
            if (!parseList(v, 2, list)) return "--at must be X,Y: " + v;
            r.clicks.emplace_back(list[0], list[1]);
        } else if (a == "--box") {
            if (!parseList(v, 4, list) || list[2] <= 0 || list[3] <= 0)
                return "--box must be X,Y,W,H with W and H above 0: " + v;
            r.box = list;
        } else if (a == "--sensitivity") {
            error = readNumber(a, v, studio::kSensitivityMin, studio::kSensitivityMax, r.sensitivity);
        } else if (a == "--width") {
            error = readNumber(a, v, studio::kSearchWidthMin, studio::kSearchWidthMax, r.width);
        } else if (a == "--red") {
            error = readNumber(a, v, studio::kThresholdMin, studio::kThresholdMax, r.red);
        } else if (a == "--other") {
            error = readNumber(a, v, studio::kThresholdMin, studio::kThresholdMax, r.other);
        } else if (a == "--bright") {
            error = readNumber(a, v, studio::kBrightMin, studio::kBrightMax, r.bright);
        } else if (a == "-o") {
            r.out = v;
        } else {
            return "unknown option: " + a;
        }
        if (!error.empty()) return error;
    }
    const bool clickOptions = r.sensitivity || r.width;
    const bool boxOptions = r.red || r.other || r.bright || r.grey;
    if (r.clicks.empty() == !r.box) return "give --at points or one --box, not both";
    if (r.clicks.size() > 2) return "at most two --at points (one in each eye)";
    if ((r.box && clickOptions) || (!r.box && boxOptions))
        return r.box ? "--sensitivity and --width go with --at" : "--red, --other, --bright and --grey go with --box";
    return {};
}

std::string sizeText(const cDIBSection& dib) {
    return std::to_string(dib.Width()) + "x" + std::to_string(dib.Height());
}

}  // namespace

int redeye(const Args& args) {
    Request r;
    if (const std::string error = parse(args, r); !error.empty()) return fail(error);
    const std::string target = r.out.empty() ? r.picture : r.out;
    if (!fileExists(r.picture)) return fail("file not found: " + r.picture);
    if (readerFor(r.picture) == PictureReader::None)
        return fail("not a picture type that can be read: " + r.picture);
    if (writerFor(target, false) == PictureWriter::None)
        return fail("cannot write this picture type: " + target + " (.jpg, .jpeg, .bmp, .png, .tif or .tiff)");

    const PictureFile file = LoadPictureFile(r.picture, ImageEnv{Language::English, {}, true});
    if (!file.picture)
        return fail(file.message ? oneLine(file.message->text) : "cannot read the picture: " + r.picture);
    studio::RedEyeSession session(*file.picture.Handle());
    const cDIBSection& dib = session.picture();

    long long changed = 0;
    if (r.box) {
        const std::vector<int>& b = *r.box;
        const long long right = static_cast<long long>(b[0]) + b[2];
        const long long bottom = static_cast<long long>(b[1]) + b[3];
        if (b[0] >= dib.Width() || b[1] >= dib.Height() || right <= 0 || bottom <= 0)
            return fail("the box lies outside the picture (" + sizeText(dib) + ")");
        session.thresholds.red = r.red.value_or(studio::SelectionThresholds::kDefaultRed);
        session.thresholds.other = r.other.value_or(studio::SelectionThresholds::kDefaultOther);
        session.thresholds.bright = r.bright.value_or(studio::SelectionThresholds::kDefaultBright);
        session.thresholds.grey = r.grey;
        std::cerr << "redeye: box " << b[0] << "," << b[1] << "," << b[2] << "," << b[3] << "\n";
        changed = session.removeInRectangle(b[0], b[1], static_cast<int>(std::min<long long>(right, dib.Width())),
                                            static_cast<int>(std::min<long long>(bottom, dib.Height())));
    } else {
        for (const auto& [x, y] : r.clicks)
            if (x < 0 || y < 0 || x >= dib.Width() || y >= dib.Height())
                return fail("the point " + std::to_string(x) + "," + std::to_string(y) +
                            " lies outside the picture (" + sizeText(dib) + ")");
        if (r.sensitivity) session.setSensitivity(*r.sensitivity);
        if (r.width) session.setSearchWidth(*r.width);
        for (const auto& [x, y] : r.clicks) {
            std::cerr << "redeye: search from " << x << "," << y << "\n";
            changed += session.click(x, y).corrected;
        }
    }
    const ImageStatus saved = studio::saveRedEyePicture(session.picture(), target, Language::English);
    if (!saved)
        return fail(saved.message ? oneLine(saved.message->text) : "cannot write the picture: " + target);
    std::cout << changed << " pixels corrected\n";
    return 0;
}

}  // namespace brindle::cli
