// How large a picture a file may claim before anything is decoded. A few
// bytes can promise billions of pixels (a GIF or IFF header, a PNG that
// inflates to gigabytes); such claims are refused from the header alone.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brindle {

// Any file may hold this many pixels (4096 x 4096): flat drawings compress
// far better than photos.
inline constexpr long long kFreePicturePixels = 1LL << 24;
// Beyond that a file must bring at least one byte per this many pixels;
// so a file under 1 MB never claims more than 64 megapixels.
inline constexpr long long kPixelsPerFileByte = 64;
// No picture of the album has more (134 megapixels, 400 MB at 24 bits).
inline constexpr long long kMaxPicturePixels = 1LL << 27;
// What a decode may need: the decoder's own bitmap and two 24-bit copies.
inline constexpr long long kPictureMemoryBudget = 800LL << 20;

// True when width x height is a size a file of `fileBytes` can honestly
// hold, decoded at `bitsPerPixel`; otherwise `why` says what is wrong.
bool plausiblePictureSize(long long width, long long height, std::size_t fileBytes,
                          int bitsPerPixel = 24, std::string* why = nullptr);

// Sizes read from the headers of the formats whose decoders allocate the
// whole picture before they could be asked for the header alone. False
// when the header is not there or cut short.
bool gifPictureSize(std::string_view bytes, long long& width, long long& height);
bool iffPictureSize(std::string_view bytes, long long& width, long long& height, int& bits);
bool sgiPictureSize(std::string_view bytes, long long& width, long long& height, int& bits);
bool ddsPictureSize(std::string_view bytes, long long& width, long long& height);
bool mngPictureSize(std::string_view bytes, long long& width, long long& height);

}  // namespace brindle
