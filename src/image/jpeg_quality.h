// How a JPEG was coded, so that a picture that has to be re-encoded comes
// out as its maker wrote it: the quality (estimated from the luminance
// quantisation table) and the chroma subsampling.
#pragma once

#include <string_view>

namespace brindle {

struct JpegCoding {
    int quality = 90;     // 1..100 on the usual scale
    int subsampling = 2;  // a TurboJPEG TJSAMP value; 2 is 4:2:0
};

// The quality whose scaled standard luminance table lies nearest the
// file's table 0. False (and `quality` untouched) without such a table.
bool estimateJpegQuality(std::string_view jpeg, int& quality);

// Quality and subsampling of `jpeg`; what cannot be read keeps its default.
JpegCoding readJpegCoding(std::string_view jpeg);

}  // namespace brindle
