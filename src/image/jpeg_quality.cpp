#include "image/jpeg_quality.h"

#include <turbojpeg.h>

#include <array>
#include <climits>
#include <cstdlib>

#include "image/jpeg_markers.h"

namespace brindle {
namespace {

using Table = std::array<int, 64>;  // in the file's zig-zag order
constexpr unsigned char kDefineQuantisation = 0xDB;

// Table 0 of the file's quantisation segments.
bool luminanceTable(std::string_view jpeg, Table& table) {
    for (std::string_view p : headSegments(jpeg, kDefineQuantisation)) {
        std::size_t pos = 0;
        while (pos < p.size()) {
            const int head = static_cast<unsigned char>(p[pos]);
            const bool wide = (head >> 4) != 0;  // 16-bit entries
            const std::size_t bytes = wide ? 128 : 64;
            if (pos + 1 + bytes > p.size()) break;
            if ((head & 0x0F) == 0) {
                for (std::size_t i = 0; i < 64; ++i) {
                    const auto* e = reinterpret_cast<const unsigned char*>(p.data()) + pos + 1;
                    table[i] = wide ? (e[2 * i] << 8) | e[2 * i + 1] : e[i];
                }
                return true;
            }
            pos += 1 + bytes;
        }
    }
    return false;
}

// The encoder's own table 0 at every quality, read from tiny encodings so
// that the scale matches what a re-encode will write.
const std::array<Table, 101>& referenceTables() {
    static const std::array<Table, 101> tables = [] {
        std::array<Table, 101> t{};
        tjhandle h = tjInitCompress();
        unsigned char grey[8 * 8] = {};
        for (int q = 1; q <= 100 && h; ++q) {
            unsigned char* out = nullptr;
            unsigned long size = 0;
            if (tjCompress2(h, grey, 8, 8, 8, TJPF_GRAY, &out, &size, TJSAMP_GRAY, q, 0) == 0)
                luminanceTable(std::string_view(reinterpret_cast<const char*>(out), size), t[q]);
            tjFree(out);
        }
        if (h) tjDestroy(h);
        return t;
    }();
    return tables;
}

}  // namespace

bool estimateJpegQuality(std::string_view jpeg, int& quality) {
    Table table{};
    if (!luminanceTable(jpeg, table)) return false;
    const auto& refs = referenceTables();
    long best = LONG_MAX;
    for (int q = 1; q <= 100; ++q) {
        long distance = 0;
        for (std::size_t i = 0; i < 64; ++i) distance += std::labs(long{table[i]} - refs[q][i]);
        // On a tie the higher quality wins: it loses less.
        if (distance <= best) {
            best = distance;
            quality = q;
        }
    }
    return true;
}

JpegCoding readJpegCoding(std::string_view jpeg) {
    JpegCoding coding;
    estimateJpegQuality(jpeg, coding.quality);
    tjhandle h = tjInitDecompress();
    int width = 0, height = 0, subsamp = -1, colourspace = 0;
    if (h &&
        tjDecompressHeader3(h, reinterpret_cast<const unsigned char*>(jpeg.data()), jpeg.size(),
                            &width, &height, &subsamp, &colourspace) == 0 &&
        subsamp >= 0 && subsamp < TJ_NUMSAMP)
        coding.subsampling = subsamp;
    if (h) tjDestroy(h);
    return coding;
}

}  // namespace brindle
