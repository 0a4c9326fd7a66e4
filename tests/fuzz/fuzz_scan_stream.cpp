#include <cstddef>
#include <cstdint>

#include "media/scan_frames.h"

namespace {

struct Reader {
    const std::uint8_t* data;
    std::size_t size;
    bool take(std::size_t n) { return size >= n; }
    int u8() { return take(1) ? (--size, *data++) : 0; }
    int i16() {
        const int low = u8();
        return static_cast<std::int16_t>(low | (u8() << 8));
    }
};

}  // namespace

// A scanner's announcements and bytes in any order: each frame is a head of
// kind, last flag, depth, bytes per line, pixels per line and lines, then
// pieces of up to 255 bytes until a piece of length 0 ends the frame. Any
// stream either fails with a message or gives a picture of the size it built.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Reader in{data, size};
    brindle::media::ScanAssembler assembler(brindle::Language::English, {1 << 20, 4096});
    while (in.size > 0 && assembler.error().empty() && !assembler.complete()) {
        brindle::media::ScanFrameFormat format;
        format.kind = in.u8() % 6;
        format.lastFrame = in.u8() & 1;
        format.depth = in.u8();
        format.bytesPerLine = in.i16();
        format.pixelsPerLine = in.i16();
        format.lines = in.i16();
        if (!assembler.beginFrame(format)) break;
        for (int piece = in.u8(); piece > 0 && in.take(static_cast<std::size_t>(piece)); piece = in.u8()) {
            if (!assembler.add(in.data, static_cast<std::size_t>(piece))) break;
            in.data += piece;
            in.size -= static_cast<std::size_t>(piece);
            (void)assembler.percent();
        }
        if (!assembler.error().empty() || !assembler.endFrame()) break;
    }
    const brindle::Picture picture = assembler.picture();
    if (picture && (!assembler.complete() || picture.Width() != assembler.width() ||
                    picture.Height() != assembler.height()))
        __builtin_trap();
    if (!assembler.error().empty() && picture) __builtin_trap();
    return 0;
}
