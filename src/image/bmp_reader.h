// Reads BMP files with our own code: every info header from the 12-byte
// core header to the 124-byte fifth version, 1, 4 and 8 bits with a colour
// table, 16 and 32 bits with or without bit-field masks, 24 bits, rows
// bottom-up or top-down. Run-length files are left to FreeImage.
#pragma once

#include <string>
#include <string_view>

#include "image/dib_section.h"

namespace brindle {

enum class BmpResult { Ok, NotBmp, Unsupported, Refused };

// Decodes `bytes` into `dib`. Unsupported means a valid file this reader
// does not decode (run-length compression); Refused a size past the limits.
BmpResult decodeBmp(std::string_view bytes, cDIBSection& dib, std::string* error = nullptr);

}  // namespace brindle
