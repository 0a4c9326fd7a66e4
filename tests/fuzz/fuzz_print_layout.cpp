#include <cstddef>
#include <cstdint>
#include <string>

#include "print/print_file.h"

// Whatever the reader accepts must write and read back to the same boxes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::vector<brindle::print::Box> boxes;
    std::string error;
    if (!brindle::print::decodeLayout(bytes, brindle::print::kAllBoxes, boxes, error)) return 0;
    const std::string out = brindle::print::encodeLayout(boxes);
    std::vector<brindle::print::Box> again;
    if (!brindle::print::decodeLayout(out, brindle::print::kAllBoxes, again, error) || again != boxes)
        __builtin_trap();
    if (brindle::print::encodeLayout(again) != out) __builtin_trap();
    return 0;
}
