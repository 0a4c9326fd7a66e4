// Helpers shared by the effect files; not part of the library's face.
#pragma once

namespace brindle::effects {

// Uniform in [0, 1), from the generator cDIBSection::seedRandom sets.
double rnd();

}  // namespace brindle::effects
