#include "properties/picture_specs.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <vector>

namespace brindle::properties {

namespace {

std::vector<std::string> splitAtCommas(const std::string& s) {
    std::vector<std::string> items;
    std::string item;
    for (char c : s) {
        if (c == ',') {
            items.push_back(item);
            item.clear();
        } else {
            item += c;
        }
    }
    items.push_back(item);
    return items;
}

// Blanks around a number are allowed; anything else is not a number.
std::optional<double> numberOf(const std::string& text) {
    const char* begin = text.c_str();
    while (*begin == ' ') ++begin;
    if (*begin == '\0') return std::nullopt;
    char* end = nullptr;
    const double v = std::strtod(begin, &end);
    while (*end == ' ') ++end;
    if (*end != '\0' || !std::isfinite(v)) return std::nullopt;
    return v;
}

// Sets a slider from item `i` when it is there and a number.
void takeSlider(const std::vector<std::string>& items, std::size_t i, const SliderRange& range, int& slider) {
    if (i >= items.size() || items[i] == "None") return;
    if (const auto v = numberOf(items[i])) slider = range.clamp(static_cast<int>(std::lround(std::clamp(*v, -1e9, 1e9))));
}

std::string n(int v) { return std::to_string(v); }

}  // namespace

// The closing comma matters: the HTML album reads the string with its
// padding appended directly, and "1None" would be no frame.
std::string buildFrameSpec(const FrameSettings& f) {
    return n(f.width) + "," + n(f.light) + "," + n(f.shadow) + "," + std::to_string(f.colour) + "," +
           (f.texture.empty() ? std::string("None") : f.texture) + "," + (f.on ? "1" : "0") + ",";
}

void readFrameSpec(const std::string& spec, FrameSettings& frame) {
    if (spec.empty()) return;
    const std::vector<std::string> items = splitAtCommas(spec);
    takeSlider(items, 0, kFrameWidthRange, frame.width);
    takeSlider(items, 1, kFrameLightRange, frame.light);
    takeSlider(items, 2, kFrameShadowRange, frame.shadow);
    if (items.size() > 3 && items[3] != "None") {
        if (const auto v = numberOf(items[3]); v && *v >= 0 && *v <= 0xFFFFFF)
            frame.colour = static_cast<std::uint32_t>(*v);
    }
    if (items.size() > 4 && items[4] != "None") frame.texture = items[4];
    if (items.size() > 5 && items[5] != "None") frame.on = items[5] == "1";
}

int drawnFrameWidth(const std::string& spec) {
    const std::vector<std::string> items = splitAtCommas(spec);
    if (items.size() < 6 || items[5] != "1") return 0;
    const auto v = numberOf(items[0]);
    return v && *v > 0 ? static_cast<int>(*v) : 0;
}

std::string machLake(int speed, int grenze) { return "Lake," + n(speed) + "," + n(grenze) + ",0,0,0"; }

std::string machRainSnow(bool snow, int speed, int anzahl) {
    return std::string(snow ? "Snow," : "Rain,") + n(speed) + "," + n(anzahl) + ",0,0,0";
}

std::string machUnderwater(int delay, int frames, int waveHigh, int waveWidth) {
    return "UnderWater," + n(delay) + "," + n(frames) + "," + n(waveHigh) + "," + n(waveWidth) + ",0,0,0";
}

std::string machPano(int delay, int startSpeed) { return "Pano," + n(delay) + "," + n(startSpeed) + ",0,0,0"; }

std::string machAniGif() { return "AnyGif,"; }

std::string buildAnimationSpec(const AnimationSettings& a) {
    const AnimationSliders& s = a.sliders;
    switch (a.kind) {
        case AnimationKind::None: break;
        case AnimationKind::Lake: return machLake(s.lakeSpeed, s.lakeGrenze);
        case AnimationKind::Rain: return machRainSnow(false, s.rainSnowSpeed, s.rainSnowAnzahl);
        case AnimationKind::Snow: return machRainSnow(true, s.rainSnowSpeed, s.rainSnowAnzahl);
        case AnimationKind::UnderWater:
            return machUnderwater(s.underwaterDelay, s.underwaterFrames, s.underwaterWaveHigh, s.underwaterWaveWidth);
        case AnimationKind::Pano: return machPano(s.panoDelay, s.panoStartSpeed);
        case AnimationKind::AnyGif: return machAniGif();
    }
    return {};
}

void readAnimationSpec(const std::string& spec, AnimationSettings& a) {
    const std::vector<std::string> items = splitAtCommas(spec);
    const std::string& name = items[0];
    AnimationSliders& s = a.sliders;
    a.kind = AnimationKind::None;
    if (name == "Lake") {
        a.kind = AnimationKind::Lake;
        takeSlider(items, 1, kLakeSpeedRange, s.lakeSpeed);
        takeSlider(items, 2, kLakeGrenzeRange, s.lakeGrenze);
    } else if (name == "Rain" || name == "Snow") {
        a.kind = name == "Rain" ? AnimationKind::Rain : AnimationKind::Snow;
        takeSlider(items, 1, kRainSnowSpeedRange, s.rainSnowSpeed);
        takeSlider(items, 2, kRainSnowAnzahlRange, s.rainSnowAnzahl);
    } else if (name == "UnderWater") {
        a.kind = AnimationKind::UnderWater;
        takeSlider(items, 1, kUnderwaterDelayRange, s.underwaterDelay);
        takeSlider(items, 2, kUnderwaterFramesRange, s.underwaterFrames);
        takeSlider(items, 3, kUnderwaterWaveHighRange, s.underwaterWaveHigh);
        takeSlider(items, 4, kUnderwaterWaveWidthRange, s.underwaterWaveWidth);
    } else if (name == "Pano") {
        a.kind = AnimationKind::Pano;
        takeSlider(items, 1, kPanoDelayRange, s.panoDelay);
        takeSlider(items, 2, kPanoStartSpeedRange, s.panoStartSpeed);
    } else if (name == "AnyGif") {
        a.kind = AnimationKind::AnyGif;
    }
}

}  // namespace brindle::properties
