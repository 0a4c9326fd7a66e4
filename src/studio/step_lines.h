// The text of each design step line, made from the values of the panel that
// adds it, and the table of the general panel: which sliders its items show
// and how the slider values go into the line. The lines are read back by
// the design chain; the two must agree on every argument.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brindle::studio {

std::string kontrastLine(int contrast);                           // "Kontrast(n)"
std::string helligkeitLine(int brightness, bool exactMethod);     // "Helligkeit(n,m)"
// The channel mask is red + 2 x green + 4 x blue.
std::string colorLine(int percent, bool red, bool green, bool blue);  // "Color(p,k)"
std::string schaerfenLine(int strength);                          // "Schärfen(n)"
std::string weichzLine(int strength);                             // "WeichZ(n)"
std::string rippleLine(int vertical, int horizontal);             // "Ripple(a,b)"
std::string waveLine(int phase, bool halfPicture);                // "Wave(a,h)"
std::string spiegelnLine(bool horizontal);                        // "Spiegeln(h)"
std::string drehenLine(bool clockwise);                           // "Drehen(+90)" / "Drehen(-90)"
std::string kachelLine(int method, bool keepSize);                // "Kachel(m,k)"
std::string buttonLine(int light, int shadow, int thickness);     // "Button(l,s,d)"
// The colour is 0x00BBGGRR written in decimal; no file leaves the last argument empty.
std::string rahmenLine(int light, int shadow, int thickness, std::uint32_t colour,
                       const std::string& backgroundFile);        // "Rahmen(l,s,d,c,f)"
std::string redNoiseLine(int radius, int lower, int upper, int method);  // "RedNoise(r,a,b,m)"
// o is 0 for a size in pixels, 1 for a size in percent.
std::string groesseLine(int widthPixels, int heightPixels, int widthPercent, int heightPercent,
                        bool percent);                            // "Größe(w,h,pw,ph,o)"

// The lines of the panels without values.
inline constexpr const char* kBlurLine = "Blureffect";
inline constexpr const char* kEmbossLine = "Emboss";
inline constexpr const char* kGrayLine = "SW-Photo";
inline constexpr const char* kNoiseLine = "Zufall";

// One slider of the general panel.
struct GeneralSlider {
    bool shown = true;
    int step = 10;      // the large step (page step)
    int minimum = 0;
    int maximum = 100;
    int value = 0;      // set when the item is chosen
    const char* labelGerman = " ";
    const char* labelEnglish = " ";
};

// Which slider values an item's line takes, in order.
enum class GeneralArgs {
    None,           // "Negativ"
    First,          // "3D Effekt(s1)"
    Second,         // "Schwarz/Weiss(s2)", "Frost-Glas(s2)", "Intensiv(s2)", "Gamma(s2)"
    FirstSecond,    // "Gold(s1,s2)", "Eis", "Stahl"
    SecondFirst,    // "Neon(s2,s1)": phase, mode
    FirstSecondColour,  // "Einfärben(s1,s2,colour)"
};

struct GeneralItem {
    const char* name;  // the line's name and the tree node's key
    GeneralSlider slider1;
    GeneralSlider slider2;
    GeneralArgs args;
};

// The items in the order of the tree.
const std::vector<GeneralItem>& generalItems();
// nullptr for a name that is not a general item.
const GeneralItem* generalItem(std::string_view name);
// The line of `item` from the two slider values (and the colour for "Einfärben").
std::string generalLine(const GeneralItem& item, int value1, int value2, std::uint32_t colour = 0);

}  // namespace brindle::studio
