#include "album/zip_archive.h"

#include <zip.h>

#include <cstdio>
#include <filesystem>

#include "album/file_io.h"
#include "album/paths.h"

namespace brindle {

namespace fs = std::filesystem;

namespace {

// Archive entries must stay inside the folder they are unpacked to.
bool isSafeEntryName(const std::string& name) {
    if (name.empty() || isSeparator(name.front())) return false;
    if (name.size() >= 2 && name[1] == ':') return false;
    std::size_t start = 0;
    while (start <= name.size()) {
        std::size_t end = name.find_first_of("/\\", start);
        std::string part = name.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (part == "..") return false;
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return true;
}

}  // namespace


bool writeZipArchive(const std::string& zipPath, const std::vector<ZipEntry>& entries, std::string& error) {
    const std::string part = zipPath + ".~part";
    std::error_code ec;
    std::filesystem::remove(part, ec);
    int err = 0;
    zip_t* z = zip_open(part.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &err);
    if (!z) {
        error = "cannot create " + part;
        return false;
    }
    bool ok = true;
    for (const ZipEntry& e : entries) {
        zip_source_t* src = zip_source_file(z, e.filePath.c_str(), 0, -1);
        zip_int64_t idx = src ? zip_file_add(z, e.name.c_str(), src, ZIP_FL_ENC_UTF_8 | ZIP_FL_OVERWRITE) : -1;
        if (idx < 0) {
            if (src) zip_source_free(src);
            error = zip_strerror(z);
            ok = false;
            break;
        }
        zip_set_file_compression(z, static_cast<zip_uint64_t>(idx), ZIP_CM_DEFLATE, 9);
    }
    if (ok && zip_close(z) != 0) {
        error = zip_strerror(z);
        ok = false;
    }
    if (!ok) zip_discard(z);
    if (ok && std::rename(part.c_str(), zipPath.c_str()) != 0) {
        error = "cannot rename " + part;
        ok = false;
    }
    if (!ok) std::filesystem::remove(part, ec);
    return ok;
}

namespace {

// Streams one entry into `target` through a temporary file beside it; the
// count of bytes is checked as they come, whatever the headers claim.
bool extractEntry(zip_t* z, zip_uint64_t index, const fs::path& target, std::uint64_t entryLimit,
                  std::uint64_t& totalLeft) {
    zip_stat_t st;
    zip_stat_init(&st);
    if (zip_stat_index(z, index, 0, &st) != 0) return false;
    if ((st.valid & ZIP_STAT_SIZE) && (st.size > entryLimit || st.size > totalLeft)) return false;
    zip_file_t* f = zip_fopen_index(z, index, 0);
    if (!f) return false;
    const std::string part = target.string() + ".~part";
    std::FILE* out = std::fopen(part.c_str(), "wb");
    bool ok = out != nullptr;
    std::uint64_t written = 0;
    char buf[65536];
    while (ok) {
        const zip_int64_t got = zip_fread(f, buf, sizeof buf);
        if (got <= 0) {
            ok = got == 0;
            break;
        }
        written += static_cast<std::uint64_t>(got);
        ok = written <= entryLimit && written <= totalLeft &&
             std::fwrite(buf, 1, static_cast<std::size_t>(got), out) == static_cast<std::size_t>(got);
    }
    zip_fclose(f);
    if (out && std::fclose(out) != 0) ok = false;
    std::error_code ec;
    if (ok) fs::rename(part, target, ec);
    if (!ok || ec) {
        fs::remove(part, ec);
        return false;
    }
    totalLeft -= written;
    return true;
}

}  // namespace

bool extractZipArchive(const std::string& archive, const std::string& dir, const ZipLimits& limits) {
    int err = 0;
    zip_t* z = zip_open(archive.c_str(), ZIP_RDONLY | ZIP_CHECKCONS, &err);
    if (!z) return false;
    bool ok = true;
    std::uint64_t totalLeft = limits.totalBytes;
    zip_int64_t n = zip_get_num_entries(z, 0);
    for (zip_int64_t i = 0; ok && i < n; ++i) {
        const char* raw = zip_get_name(z, static_cast<zip_uint64_t>(i), 0);
        std::string name = raw ? raw : "";
        if (!isSafeEntryName(name)) {
            ok = false;
            break;
        }
        if (isSeparator(name.back())) continue;  // a folder entry
        for (char& c : name)
            if (c == '\\') c = '/';
        fs::path target = fs::path(dir) / name;
        std::error_code ec;
        fs::create_directories(target.parent_path(), ec);
        ok = extractEntry(z, static_cast<zip_uint64_t>(i), target, limits.entryBytes, totalLeft);
    }
    zip_discard(z);
    return ok;
}

}  // namespace brindle
