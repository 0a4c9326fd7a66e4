// One picture of a panorama row with the match to its neighbour. The
// records stand in list order, index 0 .. n - 1; record i holds the match
// of picture i with picture i + 1 (in a closed ring the last one holds the
// match with the first).
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace brindle::panorama {

struct PanoBild {
    // Non-zero when the match is stored and need not be searched again.
    std::uint16_t gematcht = 0;
    // Working words of the composition.
    std::array<std::uint16_t, 2> reserve{};
    // Overlap column found, in pixels of the reduced ("BSPano") picture.
    std::int32_t xVersatz = 0;
    // Vertical offset to the neighbour, -20 .. 20.
    std::int32_t yVersatz = 0;
    // Offset after Y balancing.
    std::int32_t yKorrektur = 0;
    // Mean of all yVersatz values (the slope of the whole row).
    std::int32_t yMittel = 0;
    // Working values of the composition. The project file keeps the first
    // three only; the fourth is rebuilt with every composition.
    std::array<std::int32_t, 4> arbeit{};
    // Path of the source picture.
    std::string datei;

    bool operator==(const PanoBild&) const = default;
};

}  // namespace brindle::panorama
