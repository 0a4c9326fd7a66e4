// The project file "temp1.bsp" in "PanoTemp": the panorama records one
// after the other in list order, so that a stitched set can be reloaded.
//
// Per record, with no padding in between, little-endian:
//   6 bytes   gematcht u16, reserve[0] u16, reserve[1] u16
//   28 bytes  xVersatz, yVersatz, yKorrektur, yMittel, arbeit[0..2], each i32
//   2 + n     datei: u16 byte count n, then n bytes (Windows-1252 when every
//             character fits, else UTF-8)
// The file ends after the last record; a record cut short is a read error.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "album/file_io.h"
#include "panorama/pano_record.h"

namespace brindle::panorama {

inline constexpr const char* kProjectFileName = "temp1.bsp";
inline constexpr std::size_t kFixedRecordBytes = 6 + 28;

// programDirectory + "PanoTemp/temp1.bsp".
std::string panoProjectPath(const std::string& programDirectory);

// False with `error` set when a path does not fit its u16 length.
bool encodePanoProject(const std::vector<PanoBild>& records, std::string& out, std::string& error);
// False with `error` set when the bytes are not whole records; `records`
// is then left as it was.
bool decodePanoProject(std::string_view bytes, std::vector<PanoBild>& records, std::string& error);

// Creates "PanoTemp" when needed and replaces the file atomically.
IoResult writePanoProject(const std::string& programDirectory,
                          const std::vector<PanoBild>& records);
IoResult readPanoProject(const std::string& programDirectory, std::vector<PanoBild>& records);

}  // namespace brindle::panorama
