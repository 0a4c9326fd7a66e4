// A picture's frame and animation as the picture dialog edits them, and the
// comma-joined strings the record keeps (frameSpec, animationSpec): the
// HTML generator, the browser runtime and the play-mode effects read the
// same strings, so they are built in one place.
#pragma once

#include <cstdint>
#include <string>

namespace brindle::properties {

// A slider's range and start value.
struct SliderRange {
    int minimum = 0, maximum = 100, start = 0;
    int clamp(int v) const { return v < minimum ? minimum : v > maximum ? maximum : v; }
};

inline constexpr SliderRange kFrameWidthRange{1, 100, 15};
inline constexpr SliderRange kFrameLightRange{0, 100, 50};
inline constexpr SliderRange kFrameShadowRange{0, 100, 50};
inline constexpr std::uint32_t kFrameStartColour = 0x808080;

struct FrameSettings {
    bool on = false;  // chkRahmen: the program draws the frame
    int width = kFrameWidthRange.start;
    int light = kFrameLightRange.start;
    int shadow = kFrameShadowRange.start;
    std::uint32_t colour = kFrameStartColour;
    std::string texture;  // empty: the colour fills the frame

    bool operator==(const FrameSettings&) const = default;
};

// "width,light,shadow,colour,texture or None,1" (last item "0" when off).
std::string buildFrameSpec(const FrameSettings& frame);
// Takes the items of `spec` into `frame`; "None", missing and non-numeric
// items leave the setting as it is.
void readFrameSpec(const std::string& spec, FrameSettings& frame);
// The frame width when the frame string asks the program to draw a frame, else 0.
int drawnFrameWidth(const std::string& spec);

// The option buttons, in the order OK looks at them.
enum class AnimationKind { None, Lake, Rain, Snow, UnderWater, Pano, AnyGif };

// The sliders of the animation tab; Rain and Snow share theirs.
struct AnimationSliders {
    int lakeSpeed = 3, lakeGrenze = 50;
    int rainSnowSpeed = 3, rainSnowAnzahl = 60;
    int underwaterDelay = 3, underwaterFrames = 5, underwaterWaveHigh = 4, underwaterWaveWidth = 4;
    int panoDelay = 5, panoStartSpeed = 2;

    bool operator==(const AnimationSliders&) const = default;
};

inline constexpr SliderRange kLakeSpeedRange{0, 10, 3};
inline constexpr SliderRange kLakeGrenzeRange{10, 100, 50};
inline constexpr SliderRange kRainSnowSpeedRange{0, 10, 3};
inline constexpr SliderRange kRainSnowAnzahlRange{1, 100, 60};
inline constexpr SliderRange kUnderwaterDelayRange{1, 50, 3};
inline constexpr SliderRange kUnderwaterFramesRange{2, 20, 5};
inline constexpr SliderRange kUnderwaterWaveHighRange{1, 20, 4};
inline constexpr SliderRange kUnderwaterWaveWidthRange{1, 50, 4};
inline constexpr SliderRange kPanoDelayRange{1, 50, 5};
inline constexpr SliderRange kPanoStartSpeedRange{1, 20, 2};

struct AnimationSettings {
    AnimationKind kind = AnimationKind::None;
    AnimationSliders sliders;

    bool operator==(const AnimationSettings&) const = default;
};

// "Lake,speed,frontier,0,0,0"
std::string machLake(int speed, int grenze);
// "Rain,speed,density,0,0,0" or "Snow,..."
std::string machRainSnow(bool snow, int speed, int anzahl);
// "UnderWater,delay,frames,wave height,wave width,0,0,0"
std::string machUnderwater(int delay, int frames, int waveHigh, int waveWidth);
// "Pano,delay,start speed,0,0,0"
std::string machPano(int delay, int startSpeed);
// "AnyGif,"
std::string machAniGif();

// The animation string of the selected kind; empty for none.
std::string buildAnimationSpec(const AnimationSettings& animation);
// The first item picks the kind (anything unknown is none), the others set
// the kind's sliders; non-numeric items leave a slider as it is.
void readAnimationSpec(const std::string& spec, AnimationSettings& animation);

}  // namespace brindle::properties
