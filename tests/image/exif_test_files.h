// EXIF blocks built byte by byte for the tests, and the pictures a viewer
// should show for each orientation, turned by hand.
#pragma once

#include <string>

#include "image/dib_section.h"

namespace brindle::test {

struct ExifSpec {
    int orientation = 1;  // 0 leaves the tag out
    bool bigEndian = false;
    std::string make = "Brindle Test Camera";
    std::string thumbnail;  // a JPEG for IFD1; empty for none
    int pixelWidth = 0;     // with both above 0, an Exif IFD with the pixel sizes
    int pixelHeight = 0;
};

// The TIFF bytes of an EXIF block: IFD0 with Make and Orientation, the
// Exif IFD, IFD1 with the thumbnail.
std::string exifTiff(const ExifSpec& spec);

// `jpeg` with an APP1 "Exif\0\0" segment holding `tiff` right after the
// start of image, as cameras write it.
std::string jpegWithExif(const std::string& jpeg, const std::string& tiff);

// What exiv2's own file reader, as an EXIF-aware viewer, finds in a file.
struct ExifSeen {
    bool hasExif = false;
    long orientation = 0;  // 0 when the tag is missing
    std::string make;
    bool hasThumbnail = false;
    long pixelWidth = 0, pixelHeight = 0;
};
ExifSeen exifSeenByExiv2(const std::string& path);

// What a viewer shows for rows stored with EXIF `orientation`.
cDIBSection shownByHand(const cDIBSection& stored, int orientation);
// Turned 90 degrees clockwise.
cDIBSection turnedRightByHand(const cDIBSection& dib);

}  // namespace brindle::test
