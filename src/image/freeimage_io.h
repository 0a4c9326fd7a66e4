// The FreeImage roads: reading by content, reading the first page of a
// multi-page file, reading as one named format (our stand-in for the older
// platform's own picture loader), and saving PNG and TIFF.
#pragma once

#include <string>

#include "image/dib_section.h"
#include "image/image_env.h"

namespace brindle {

// FreeImage's numbers for the two formats it writes for us.
inline constexpr int kFreeImagePng = 13;
inline constexpr int kFreeImageTiff = 18;

// The formats the platform loader reads, each only as itself.
enum class PlatformFormat { Bmp, Gif, Icon, Jpeg };

// Every reader below works on the file's bytes in memory and reads the
// header before the pixels: a picture larger than the limits of
// picture_limits.h is refused before FreeImage allocates it.

// Tells the type from the first 16 bytes and reads it. FreeImage's own
// complaints go to the log.
bool freeImageReadBytes(const std::string& bytes, cDIBSection& dib, const ImageEnv& env,
                        std::string* error = nullptr);
bool freeImageSingleRead(const std::string& path, cDIBSection& dib, const ImageEnv& env,
                         std::string* error = nullptr);

// Reads page 1 of a multi-page file; its failures are logged in the form
// "[FreeImage_MultiPage_Load] ...".
bool freeImageMultiPageRead(const std::string& path, cDIBSection& dib, const ImageEnv& env);
bool freeImageMultiPageReadBytes(const std::string& bytes, cDIBSection& dib, const ImageEnv& env,
                                 std::string* error = nullptr);

// The size (and FreeImage's bits per pixel) a file of a type FreeImage
// knows claims in its header, without decoding; false when unknown.
bool freeImageClaimedSize(const std::string& bytes, long long& width, long long& height,
                          int& bitsPerPixel, std::string* error = nullptr);

bool platformRead(const std::string& path, PlatformFormat format, cDIBSection& dib,
                  const ImageEnv& env, std::string* error = nullptr);
bool platformReadBytes(const std::string& bytes, PlatformFormat format, cDIBSection& dib,
                       const ImageEnv& env, std::string* error = nullptr);

// Encodes `dib` as format 13 (PNG) or 18 (TIFF) into `out`.
bool freeImageEncode(const cDIBSection& dib, int format, std::string& out,
                     std::string* error = nullptr);
// Writes `dib` as format 13 (PNG) or 18 (TIFF).
bool freeImageSave(const cDIBSection& dib, const std::string& path, int format,
                   std::string* error = nullptr);

}  // namespace brindle
