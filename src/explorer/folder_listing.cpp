#include "explorer/folder_listing.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>

#include "album/paths.h"

namespace brindle::explorer {

namespace {

struct FormatRow {
    const char* patterns;
    const char* description;
};

// One entry per format; the descriptions name the format, not a program.
constexpr FormatRow kPictureFormats[] = {
    {"*.bmp", "Windows Bitmap"},
    {"*.ico", "Windows Icon"},
    {"*.gif", "Graphics Interchange Format"},
    {"*.jpg;*.jpeg", "Joint Photographic Experts Group"},
    {"*.png", "Portable Network Graphics"},
    {"*.pcx", "Zsoft Paintbrush"},
    {"*.tga", "Truevision Targa"},
    {"*.wmf", "Windows Metafile"},
    {"*.emf", "Enhanced Metafile"},
    {"*.wbmp", "Wireless Bitmap"},
    {"*.pbm;*.pbmraw", "Portable Bitmap"},
    {"*.pgm;*.pgmraw", "Portable Graymap"},
    {"*.ppm;*.ppmraw", "Portable Pixmap"},
    {"*.psd", "Photoshop Document"},
    {"*.jbig;*.jbg", "Joint Bi-level Image Experts Group"},
    {"*.ras", "Sun Raster"},
    {"*.iff;*.lbm", "Interchange File Format"},
    {"*.cut", "Dr. Halo"},
    {"*.pcd", "Photo CD"},
    {"*.koala", "Koala Paint"},
};

constexpr FormatRow kMediaFormats[] = {
    {"*.mid", "Musical Instrument Digital Interface"},
    {"*.wav", "Waveform Audio"},
    {"*.avi", "Audio Video Interleave"},
    {"*.wmv", "Windows Media Video"},
    {"*.mpeg;*.mpg", "Moving Picture Experts Group"},
    {"*.mp3", "MPEG Audio Layer 3"},
    {"*.mp2", "MPEG Audio Layer 2"},
    {"*.mp1", "MPEG Audio Layer 1"},
    {"*.cda", "Audio CD Track"},
};

char lowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool endsWithLower(const std::string& name, const std::string& lowerSuffix) {
    if (name.size() < lowerSuffix.size()) return false;
    const std::size_t off = name.size() - lowerSuffix.size();
    for (std::size_t i = 0; i < lowerSuffix.size(); ++i)
        if (lowerAscii(name[off + i]) != lowerSuffix[i]) return false;
    return true;
}

bool matchesOne(const std::string& fileName, std::string pattern) {
    while (!pattern.empty() && pattern.front() == ' ') pattern.erase(pattern.begin());
    while (!pattern.empty() && pattern.back() == ' ') pattern.pop_back();
    if (pattern == "*.*" || pattern == "*") return true;
    if (pattern.size() < 3 || pattern.compare(0, 2, "*.") != 0) return false;
    return endsWithLower(fileName, asciiLower(pattern.substr(1)));
}

int compareNames(const std::string& a, const std::string& b) {
    const std::size_t n = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < n; ++i) {
        const char x = lowerAscii(a[i]), y = lowerAscii(b[i]);
        if (x != y) return static_cast<unsigned char>(x) < static_cast<unsigned char>(y) ? -1 : 1;
    }
    if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
    return a.compare(b) < 0 ? -1 : (a == b ? 0 : 1);
}

int compareKey(const FileEntry& a, const FileEntry& b, SortKey key) {
    switch (key) {
        case SortKey::Size:
            if (a.size != b.size) return a.size < b.size ? -1 : 1;
            return 0;
        case SortKey::Time:
            if (a.modifiedSeconds != b.modifiedSeconds) return a.modifiedSeconds < b.modifiedSeconds ? -1 : 1;
            if (a.modifiedNanoseconds != b.modifiedNanoseconds)
                return a.modifiedNanoseconds < b.modifiedNanoseconds ? -1 : 1;
            return 0;
        case SortKey::Name:
            break;
    }
    return compareNames(a.name, b.name);
}

std::string extensionOf(const std::string& fileName) {
    const std::size_t dot = fileName.rfind('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == fileName.size()) return {};
    return fileName.substr(dot + 1);
}

}  // namespace

const std::string& picturePatterns() {
    static const std::string s =
        "*.bmp;*.ico;*.gif;*.jpg;*.jpeg;*.png;*.pcx;*.tga;*.wmf;*.emf;*.wbmp;*.pbm;*.pgm;*.ppm;*.pbmraw;"
        "*.pgmraw;*.ppmraw;*.psd;*.jbig;*.jbg;*.ras;*.iff;*.lbm;*.cut;*.pcd;*.koala";
    return s;
}

const std::string& mediaPatterns() {
    static const std::string s = "*.mid;*.wav;*.avi;*.wmv;*.mpeg;*.mp3;*.mpg;*.mp2;*.mp1;*.cda";
    return s;
}

std::vector<FileFilter> fileFilters(Language language) {
    std::vector<FileFilter> out;
    out.push_back({tr(language, "Alle unterstützten Bilddateien", "All supported picture files"), picturePatterns()});
    out.push_back({tr(language, "Alle unterstützten Mediadateien", "All supported media files"), mediaPatterns()});
    out.push_back({tr(language, "Alle unterstützten Dateien", "All supported files"),
                   picturePatterns() + ";" + mediaPatterns()});
    for (const FormatRow& row : kPictureFormats)
        out.push_back({std::string(row.patterns) + "   " + row.description, row.patterns});
    for (const FormatRow& row : kMediaFormats)
        out.push_back({std::string(row.patterns) + "   " + row.description, row.patterns});
    out.push_back({"*.*", "*.*"});
    return out;
}

bool matchesPatterns(const std::string& fileName, const std::string& patterns) {
    std::size_t start = 0;
    while (start <= patterns.size()) {
        std::size_t end = patterns.find(';', start);
        if (end == std::string::npos) end = patterns.size();
        if (matchesOne(fileName, patterns.substr(start, end - start))) return true;
        start = end + 1;
    }
    return false;
}

bool isMediaName(const std::string& fileName) { return matchesPatterns(fileName, mediaPatterns()); }

const char* sortKeyName(SortKey key) {
    switch (key) {
        case SortKey::Size: return "SortSize";
        case SortKey::Time: return "SortTime";
        case SortKey::Name: break;
    }
    return "Sortname";
}

std::optional<SortKey> sortKeyFromName(const std::string& name) {
    if (name == "Sortname") return SortKey::Name;
    if (name == "SortSize") return SortKey::Size;
    if (name == "SortTime") return SortKey::Time;
    return std::nullopt;
}

FolderListing listFolder(const std::string& folder, const std::string& patterns,
                         const PictureSizeLookup& pictureSize) {
    FolderListing out;
    const std::string dir = withTrailingSeparator(folder);
    DIR* d = opendir(dir.c_str());
    if (!d) {
        out.error = std::strerror(errno);
        return out;
    }
    while (const dirent* e = readdir(d)) {
        const std::string name = e->d_name;
        if (name.empty() || name[0] == '.' || !matchesPatterns(name, patterns)) continue;
        struct stat st {};
        if (stat((dir + name).c_str(), &st) != 0 || !S_ISREG(st.st_mode)) continue;
        FileEntry entry;
        entry.name = name;
        entry.path = dir + name;
        entry.size = static_cast<std::uintmax_t>(st.st_size);
        entry.modifiedSeconds = st.st_mtim.tv_sec;
        entry.modifiedNanoseconds = st.st_mtim.tv_nsec;
        entry.permissions = st.st_mode & 0777;
        if (pictureSize && !isMediaName(name) && !pictureSize(entry.path, entry.width, entry.height))
            entry.width = entry.height = 0;
        out.entries.push_back(std::move(entry));
    }
    closedir(d);
    out.ok = true;
    return out;
}

void sortEntries(std::vector<FileEntry>& entries, SortKey key, bool descending) {
    std::sort(entries.begin(), entries.end(), [key, descending](const FileEntry& a, const FileEntry& b) {
        const int k = compareKey(a, b, key);
        if (k != 0) return descending ? k > 0 : k < 0;
        return compareNames(a.name, b.name) < 0;
    });
}

std::vector<std::string> columnHeads(Language language) {
    if (language == Language::German)
        return {"Dateiname", "Größe", "Typ", "Geändert am", "Attribute", "Breite", "Höhe", "Pixel"};
    return {"Filename", "Size", "Type", "Change at", "Attribute", "Width", "Height", "Pixel"};
}

std::vector<std::string> columnTexts(const FileEntry& entry, Language language) {
    std::vector<std::string> out(kColumnCount);
    out[kColName] = entry.name;
    out[kColSize] = groupedNumber(entry.size, language);
    out[kColType] = fileTypeText(entry.name, language);
    out[kColTime] = fileDateText(entry.modifiedSeconds, language);
    out[kColAttributes] = attributeText(entry.permissions);
    if (entry.sizeKnown()) {
        out[kColWidth] = std::to_string(entry.width);
        out[kColHeight] = std::to_string(entry.height);
        out[kColPixels] = groupedNumber(static_cast<std::uintmax_t>(entry.pixels()), language);
    }
    return out;
}

SortKey sortKeyForColumn(int column) {
    if (column == kColSize) return SortKey::Size;
    if (column == kColTime) return SortKey::Time;
    return SortKey::Name;
}

std::string fileTypeText(const std::string& fileName, Language language) {
    std::string ext = extensionOf(fileName);
    if (ext.empty()) return tr(language, "Datei", "File");
    for (char& c : ext)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return ext + tr(language, "-Datei", " file");
}

std::string attributeText(unsigned permissions) {
    static const char kLetters[] = "rwxrwxrwx";
    std::string out(9, '-');
    for (int i = 0; i < 9; ++i)
        if (permissions & (0400u >> i)) out[i] = kLetters[i];
    return out;
}

std::string fileDateText(std::int64_t seconds, Language language) {
    const std::time_t t = static_cast<std::time_t>(seconds);
    std::tm tm {};
    if (!localtime_r(&t, &tm)) return {};
    char buf[64];
    const char* format = language == Language::German ? "%d.%m.%Y %H:%M:%S" : "%Y-%m-%d %H:%M:%S";
    if (std::strftime(buf, sizeof buf, format, &tm) == 0) return {};
    return buf;
}

std::string groupedNumber(std::uintmax_t value, Language language) {
    const std::string digits = std::to_string(value);
    const char sep = language == Language::German ? '.' : ',';
    std::string out;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) out += sep;
        out += digits[i];
    }
    return out;
}

std::string fileInfoText(const FileEntry& entry, Language language) {
    const bool de = language == Language::German;
    std::string out = de ? "Dateiinformationen:" : "File information:";
    out += "\n";
    out += "Name: " + entry.name + "\n";
    if (entry.sizeKnown())
        out += de ? "Bildgröße: " + std::to_string(entry.width) + "  x " + std::to_string(entry.height) + " Pixel\n"
                  : "Picture size: " + std::to_string(entry.width) + " x " + std::to_string(entry.height) + " pixels\n";
    out += std::string(de ? "Dateigröße: " : "File size: ") + std::to_string(entry.size) + (de ? " Byte\n" : " bytes\n");
    out += std::string(de ? "Dateidatum: " : "File date: ") + fileDateText(entry.modifiedSeconds, language);
    return out;
}

}  // namespace brindle::explorer
