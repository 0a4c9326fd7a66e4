// The picture dialog reads a picture's frame and animation strings from page
// files: any bytes must give sliders within their ranges, and what it
// builds back must read again to the same settings.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "properties/picture_specs.h"

using namespace brindle::properties;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    FrameSettings frame;
    readFrameSpec(text, frame);
    if (frame.width != kFrameWidthRange.clamp(frame.width) || frame.light != kFrameLightRange.clamp(frame.light) ||
        frame.shadow != kFrameShadowRange.clamp(frame.shadow) || frame.colour > 0xFFFFFF)
        std::abort();
    (void)drawnFrameWidth(text);
    AnimationSettings animation;
    readAnimationSpec(text, animation);
    AnimationSettings again;
    readAnimationSpec(buildAnimationSpec(animation), again);
    if (buildAnimationSpec(again) != buildAnimationSpec(animation)) std::abort();
    return 0;
}
