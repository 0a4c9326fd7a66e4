// A ".bsv" template exchange file is a ZIP from another machine: unpacking
// must stay inside its folder and within its limits, whatever it holds.
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "album/zip_archive.h"

namespace fs = std::filesystem;

namespace {

fs::path& workFolder() {
    static fs::path folder;
    return folder;
}

void removeWorkFolder() {
    std::error_code ec;
    fs::remove_all(workFolder(), ec);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fs::path root = [] {
        workFolder() = fs::temp_directory_path() / ("brindle-fuzz-bsv-" + std::to_string(::getpid()));
        fs::create_directories(workFolder());
        std::atexit(removeWorkFolder);
        return workFolder();
    }();
    const fs::path archive = root / "in.bsv";
    const fs::path out = root / "out";
    std::error_code ec;
    fs::remove_all(out, ec);
    fs::create_directories(out / "inner");
    std::ofstream(archive, std::ios::binary).write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));

    brindle::ZipLimits limits;
    limits.entryBytes = 1 << 20;
    limits.totalBytes = 4 << 20;
    const bool ok = brindle::extractZipArchive(archive.string(), (out / "inner").string() + "/", limits);

    // Nothing may land beside the target folder, and the limits hold.
    std::uintmax_t total = 0;
    for (auto it = fs::recursive_directory_iterator(out, ec); !ec && it != fs::end(it); it.increment(ec)) {
        const fs::path rel = fs::relative(it->path(), out / "inner", ec);
        if (rel.empty() || *rel.begin() == "..") __builtin_trap();
        if (it->is_regular_file()) {
            const std::uintmax_t bytes = it->file_size();
            if (bytes > limits.entryBytes) __builtin_trap();
            total += bytes;
        }
    }
    if (ok && total > limits.totalBytes) __builtin_trap();
    return 0;
}
