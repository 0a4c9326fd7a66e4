#include <cstddef>
#include <cstdint>
#include <string_view>

#include "explorer/explorer_options.h"

// Whatever option.loo holds, reading gives settings that write and read
// back unchanged.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace brindle::explorer;
    const ExplorerOptions options = decodeExplorerOptions(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!(decodeExplorerOptions(encodeExplorerOptions(options)) == options)) __builtin_trap();
    return 0;
}
