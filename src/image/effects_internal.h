// Helpers shared by the effect files; not part of the library's face.
#pragma once

#include <cstdint>

namespace brindle::effects {

// Uniform in [0, 1), from the generator cDIBSection::seedRandom sets.
double rnd();

// The byte tables of the contrast and the brightness effects.
void contrastTable(int contrast, std::uint8_t (&table)[256]);
void brightnessTable(int brightness, std::uint8_t (&table)[256]);

}  // namespace brindle::effects
