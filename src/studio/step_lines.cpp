#include "studio/step_lines.h"

#include <algorithm>

namespace brindle::studio {

namespace {

std::string join(std::string_view name, std::initializer_list<std::string> args) {
    std::string line(name);
    line += '(';
    bool first = true;
    for (const std::string& a : args) {
        if (!first) line += ',';
        line += a;
        first = false;
    }
    line += ')';
    return line;
}

std::string n(int value) { return std::to_string(value); }
std::string flag(bool value) { return value ? "1" : "0"; }

}  // namespace

std::string kontrastLine(int contrast) { return join("Kontrast", {n(contrast)}); }

std::string helligkeitLine(int brightness, bool exactMethod) {
    return join("Helligkeit", {n(brightness), flag(exactMethod)});
}

std::string colorLine(int percent, bool red, bool green, bool blue) {
    return join("Color", {n(percent), n((red ? 1 : 0) + 2 * (green ? 1 : 0) + 4 * (blue ? 1 : 0))});
}

std::string schaerfenLine(int strength) { return join("Schärfen", {n(strength)}); }
std::string weichzLine(int strength) { return join("WeichZ", {n(strength)}); }
std::string rippleLine(int vertical, int horizontal) { return join("Ripple", {n(vertical), n(horizontal)}); }
std::string waveLine(int phase, bool halfPicture) { return join("Wave", {n(phase), flag(halfPicture)}); }
std::string spiegelnLine(bool horizontal) { return join("Spiegeln", {flag(horizontal)}); }
std::string drehenLine(bool clockwise) { return clockwise ? "Drehen(+90)" : "Drehen(-90)"; }
std::string kachelLine(int method, bool keepSize) { return join("Kachel", {n(method), flag(keepSize)}); }

std::string buttonLine(int light, int shadow, int thickness) {
    return join("Button", {n(light), n(shadow), n(thickness)});
}

std::string rahmenLine(int light, int shadow, int thickness, std::uint32_t colour, const std::string& backgroundFile) {
    return join("Rahmen", {n(light), n(shadow), n(thickness), std::to_string(colour), backgroundFile});
}

std::string redNoiseLine(int radius, int lower, int upper, int method) {
    return join("RedNoise", {n(radius), n(lower), n(upper), n(method)});
}

std::string groesseLine(int widthPixels, int heightPixels, int widthPercent, int heightPercent, bool percent) {
    return join("Größe", {n(widthPixels), n(heightPixels), n(widthPercent), n(heightPercent), flag(percent)});
}

const std::vector<GeneralItem>& generalItems() {
    // shown, large step, minimum, maximum, value on choosing, labels
    static const GeneralSlider blank{true, 10, 0, 100, 0, " ", " "};
    static const GeneralSlider metalValue{true, 10, -100, 100, 0, "Wert", "Value"};
    static const GeneralSlider metalSecond{true, 5, 0, 255, 128, " ", " "};
    static const std::vector<GeneralItem> items = {
        {"Einfärben",
         {true, 10, -100, 100, 0, "Helligkeit", "Brightness"},
         {true, 5, 0, 100, 50, "Farberhaltung", "Hold Colors"},
         GeneralArgs::FirstSecondColour},
        {"Schwarz/Weiss", blank, {true, 5, 0, 255, 128, "Schwelle", "Threshold"}, GeneralArgs::Second},
        // Depth 10 lifts bright parts by about a thirtieth of the height.
        {"3D Effekt", {false, 10, 0, 100, 10, " ", " "}, {false, 5, 0, 100, 0, " ", " "}, GeneralArgs::First},
        {"Negativ", {false, 10, 0, 100, 0, " ", " "}, {false, 5, 0, 100, 0, " ", " "}, GeneralArgs::None},
        {"Frost-Glas", blank, {true, 4, 0, 16, 4, "Stärke", "Strength"}, GeneralArgs::Second},
        {"Neon", {true, 1, 0, 2, 0, "Modus", "Mode"}, {true, 10, 0, 50, 0, "Phase", "Phase"}, GeneralArgs::SecondFirst},
        // These two have one value; their mode slider has nothing to choose.
        {"Intensiv", {false, 1, 0, 2, 0, "Modus", "Mode"}, {true, 10, 1, 100, 50, "Wert", "Value"}, GeneralArgs::Second},
        {"Gamma", {false, 1, 0, 2, 0, "Modus", "Mode"}, {true, 10, 10, 300, 100, "Wert", "Value"}, GeneralArgs::Second},
        {"Stahl", metalValue, metalSecond, GeneralArgs::FirstSecond},
        {"Gold", metalValue, metalSecond, GeneralArgs::FirstSecond},
        {"Eis", metalValue, metalSecond, GeneralArgs::FirstSecond},
    };
    return items;
}

const GeneralItem* generalItem(std::string_view name) {
    const auto& items = generalItems();
    auto it = std::find_if(items.begin(), items.end(), [&](const GeneralItem& i) { return name == i.name; });
    return it == items.end() ? nullptr : &*it;
}

std::string generalLine(const GeneralItem& item, int value1, int value2, std::uint32_t colour) {
    switch (item.args) {
        case GeneralArgs::None:
            return item.name;
        case GeneralArgs::First:
            return join(item.name, {n(value1)});
        case GeneralArgs::Second:
            return join(item.name, {n(value2)});
        case GeneralArgs::FirstSecond:
            return join(item.name, {n(value1), n(value2)});
        case GeneralArgs::SecondFirst:
            return join(item.name, {n(value2), n(value1)});
        case GeneralArgs::FirstSecondColour:
            return join(item.name, {n(value1), n(value2), std::to_string(colour)});
    }
    return item.name;
}

}  // namespace brindle::studio
