// Exposure matching of the pictures of one panorama row. Cameras set the
// exposure of each shot on their own, so neighbours show the same sky at
// different brightness and the seams become bands. Each picture gets a
// gain per channel (blue, green, red) from the mean levels of the overlaps
// it shares with its neighbours: the first picture keeps 1.0 and each next
// one takes the previous gain x mean(left picture's overlap) / mean(right
// picture's overlap). Per channel rather than by luminance, so that a
// shift of the white balance between shots is matched too.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "image/dib_section.h"
#include "panorama/pano_layout.h"

namespace brindle::panorama {

using ChannelGains = std::array<double, 3>;  // blue, green, red

// Pixels at or above this level in either picture are left out of the
// means: a clipped sky says nothing about the exposure.
inline constexpr int kGainClipLevel = 250;
// One seam never changes a gain by more than this factor either way.
inline constexpr double kMaxSeamGain = 2.0;

// The ratio mean(left) / mean(right) per channel over the rows both
// pictures of the seam cover; 1.0 where a channel has no usable pixel.
ChannelGains seamGainRatio(const cDIBSection& left, const cDIBSection& right,
                           const PanoGeometry& geometry, const PanoSeam& seam);

// One gain set per picture. In a 360 degree row the mismatch that remains
// after a full turn is spread evenly over all seams, so that the closing
// seam shows no more step than any other.
std::vector<ChannelGains> matchGains(std::span<const cDIBSection> pictures,
                                     const PanoGeometry& geometry);

// table[v] = v x gain rounded to the nearest byte; the identity for 1.0.
void gainTable(double gain, std::array<std::uint8_t, 256>& table);

}  // namespace brindle::panorama
