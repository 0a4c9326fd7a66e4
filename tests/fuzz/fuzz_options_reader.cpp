#include <cstddef>
#include <cstdint>
#include <string>

#include "album/options_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brindle::OptionsRecord options;
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (!brindle::decodeOptions(bytes, options).ok()) return 0;
    std::string out;
    if (!brindle::encodeOptions(options, out).ok()) return 0;
    brindle::OptionsRecord again;
    if (!brindle::decodeOptions(out, again).ok() || !(again == options)) __builtin_trap();
    return 0;
}
