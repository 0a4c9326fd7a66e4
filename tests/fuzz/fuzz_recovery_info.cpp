// The crash-recovery info file: whatever is read back writes the same text.
#include <cstddef>
#include <cstdint>
#include <string>

#include "album/recovery.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    brindle::CheckpointInfo info;
    if (!brindle::decodeCheckpointInfo(text, info)) return 0;
    brindle::CheckpointInfo again;
    if (!brindle::decodeCheckpointInfo(brindle::encodeCheckpointInfo(info), again)) __builtin_trap();
    if (again.albumPath != info.albumPath || again.pageFile != info.pageFile || again.title != info.title ||
        again.slot != info.slot)
        __builtin_trap();
    return 0;
}
