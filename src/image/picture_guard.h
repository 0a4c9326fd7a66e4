// The one size check in front of every decoder: the picture's type is told
// from its bytes (not its name) and the size its header claims is held
// against the limits of picture_limits.h.
#pragma once

#include <string>

namespace brindle {

// False, with the reason in `why`, when the header claims a picture past
// the limits or a type whose size cannot be known before decoding. Bytes
// of no type FreeImage knows pass: their own readers check them.
bool pictureSizeAllowed(const std::string& bytes, std::string* why = nullptr);

}  // namespace brindle
