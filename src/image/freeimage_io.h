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

// Tells the type from the file's first 16 bytes and reads it. FreeImage's
// own complaints go to the log.
bool freeImageSingleRead(const std::string& path, cDIBSection& dib, const ImageEnv& env,
                         std::string* error = nullptr);

// Reads page 1 of a multi-page file; its failures are logged in the form
// "[FreeImage_MultiPage_Load] ...".
bool freeImageMultiPageRead(const std::string& path, cDIBSection& dib, const ImageEnv& env);

bool platformRead(const std::string& path, PlatformFormat format, cDIBSection& dib,
                  const ImageEnv& env, std::string* error = nullptr);

// Writes `dib` as format 13 (PNG) or 18 (TIFF).
bool freeImageSave(const cDIBSection& dib, const std::string& path, int format,
                   std::string* error = nullptr);

}  // namespace brindle
