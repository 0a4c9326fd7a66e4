// Pictures and file times for the explorer's tests, made by the tests.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "image/dib_section.h"
#include "image/image_compare.h"
#include "image/jpeg_io.h"
#include "image/jpeg_quality.h"

namespace brindle::test {

// Two colours side by side (left | right), or one above the other
// (top / bottom) with `stacked`.
inline cDIBSection twoColours(int width, int height, Bgr first, Bgr second, bool stacked) {
    return makeDib(width, height, [=](int x, int y) {
        return (stacked ? y < height / 2 : x < width / 2) ? first : second;
    });
}

inline void writeFile(const std::string& path, const std::string& bytes) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

inline std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// A JPEG at quality 95 written by our own encoder.
inline void writePicture(const std::string& path, const cDIBSection& dib) {
    std::string jpeg;
    ASSERT_TRUE(encodeJpeg(dib, 95, jpeg));
    writeFile(path, jpeg);
}

inline struct timespec modified(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0) return {};
    return st.st_mtim;
}

inline void setModified(const std::string& path, long seconds, long nanoseconds = 0) {
    const struct timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0) << path;
}

inline int jpegQualityOf(const std::string& jpeg) {
    int q = 0;
    return estimateJpegQuality(jpeg, q) ? q : -1;
}

}  // namespace brindle::test

// File times compare in the tests' EXPECT_EQ.
inline bool operator==(const struct timespec& a, const struct timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}
