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

bool extractZipArchive(const std::string& archive, const std::string& dir) {
    int err = 0;
    zip_t* z = zip_open(archive.c_str(), ZIP_RDONLY | ZIP_CHECKCONS, &err);
    if (!z) return false;
    bool ok = true;
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
        zip_file_t* f = zip_fopen_index(z, static_cast<zip_uint64_t>(i), 0);
        if (!f) {
            ok = false;
            break;
        }
        std::string data;
        char buf[65536];
        for (zip_int64_t got; (got = zip_fread(f, buf, sizeof buf)) > 0;) data.append(buf, static_cast<std::size_t>(got));
        zip_int64_t last = zip_fread(f, buf, sizeof buf);
        zip_fclose(f);
        ok = last == 0 && writeFileAtomic(target.string(), data).ok;
    }
    zip_discard(z);
    return ok;
}


}  // namespace brindle
