#include <cstddef>
#include <cstdint>
#include <string>

#include "panorama/pano_project.h"

// Whatever the reader accepts must write and read back to the same records.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::vector<brindle::panorama::PanoBild> records;
    std::string error;
    if (!brindle::panorama::decodePanoProject(bytes, records, error)) return 0;
    std::string out;
    if (!brindle::panorama::encodePanoProject(records, out, error)) return 0;
    std::vector<brindle::panorama::PanoBild> again;
    if (!brindle::panorama::decodePanoProject(out, again, error) || again != records)
        __builtin_trap();
    return 0;
}
