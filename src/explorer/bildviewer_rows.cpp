#include "explorer/bildviewer_rows.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <ctime>
#include <filesystem>
#include <sstream>

namespace brindle::explorer {

namespace fs = std::filesystem;

namespace {

const char* const kPictures =
    "*.bmp;*.ico;*.gif;*.jpg;*.jpeg;*.png;*.pcx;*.tga;*.wmf;*.emf;*.wbmp;*.pbm;*.pgm;*.ppm;*.pbmraw;*.pgmraw;"
    "*.ppmraw;*.psd;*.jbig;*.jbg;*.ras;*.iff;*.lbm;*.cut;*.pcd;*.koala";
const char* const kMedia = "*.mid;*.wav;*.avi;*.wmv;*.mpeg;*.mp3;*.mpg;*.mp2;*.mp1;*.cda";

struct Format {
    const char* patterns;
    const char* name;
};
const Format kFormats[] = {
    {"*.bmp", "Windows Bitmap"},
    {"*.gif", "Graphics Interchange Format"},
    {"*.jpg;*.jpeg", "Joint Photographic Experts Group"},
    {"*.png", "Portable Network Graphics"},
    {"*.pcx", "Zsoft Paintbrush"},
    {"*.tga", "Truevision Targa"},
    {"*.ico", "Windows Icon"},
    {"*.wmf;*.emf", "Windows Metafile"},
    {"*.psd", "Photoshop Document"},
    {"*.pbm;*.pgm;*.ppm", "Portable Bitmap / Graymap / Pixmap"},
    {"*.ras", "Sun Rasterfile"},
    {"*.iff;*.lbm", "Interchange File Format"},
    {"*.pcd", "Kodak PhotoCD"},
};

std::string lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// "*.jpg" matches a name ending in ".jpg" (any case); "*.*" and "*" match all.
bool matches(const std::string& lowerName, const std::string& patterns) {
    std::stringstream in(patterns);
    std::string p;
    while (std::getline(in, p, ';')) {
        p = lower(p);
        if (p == "*.*" || p == "*") return true;
        if (p.size() > 1 && p[0] == '*') {
            const std::string tail = p.substr(1);
            if (lowerName.size() >= tail.size() && lowerName.compare(lowerName.size() - tail.size(), tail.size(), tail) == 0)
                return true;
        } else if (p == lowerName) {
            return true;
        }
    }
    return false;
}

std::string suffixUpper(const std::string& name) {
    const auto dot = name.rfind('.');
    if (dot == std::string::npos) return {};
    std::string s = name.substr(dot + 1);
    for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

std::string dateText(std::int64_t seconds) {
    const std::time_t t = static_cast<std::time_t>(seconds);
    std::tm local{};
    localtime_r(&t, &local);
    char buf[32];
    std::strftime(buf, sizeof buf, "%d.%m.%Y %H:%M", &local);
    return buf;
}

}  // namespace

std::string columnHead(Column column, Language language) {
    static const char* const kGerman[] = {"Dateiname", "Größe", "Typ", "Geändert am",
                                          "Attribute", "Breite", "Höhe", "Pixel"};
    static const char* const kEnglish[] = {"Filename", "Size", "Type", "Change at",
                                           "Attribute", "Width", "Height", "Pixel"};
    const int i = static_cast<int>(column);
    return language == Language::German ? kGerman[i] : kEnglish[i];
}

std::vector<PatternEntry> patternEntries(Language language) {
    std::vector<PatternEntry> list;
    list.push_back({tr(language, "Alle unterstützten Bilddateien", "All supported picture files"), kPictures});
    list.push_back({tr(language, "Alle unterstützten Mediadateien", "All supported media files"), kMedia});
    list.push_back({tr(language, "Alle unterstützten Dateien", "All supported files"),
                    std::string(kPictures) + ";" + kMedia});
    for (const Format& f : kFormats) list.push_back({std::string(f.patterns) + "   " + f.name, f.patterns});
    list.push_back({"*.*", "*.*"});
    return list;
}

bool isMediaFile(const std::string& path) { return matches(lower(fs::path(path).filename().string()), kMedia); }

std::vector<FileRow> listRows(const std::string& folder, const std::string& patterns) {
    std::vector<FileRow> rows;
    std::error_code ec;
    for (auto it = fs::directory_iterator(folder, ec); !ec && it != fs::directory_iterator(); it.increment(ec)) {
        const std::string path = it->path().string();
        struct stat st {};
        if (::stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) continue;
        FileRow r;
        r.name = it->path().filename().string();
        if (!matches(lower(r.name), patterns)) continue;
        r.path = path;
        r.type = suffixUpper(r.name);
        r.size = static_cast<std::uintmax_t>(st.st_size);
        r.modified = static_cast<std::int64_t>(st.st_mtim.tv_sec);
        r.attributes = std::string(::access(path.c_str(), R_OK) == 0 ? "r" : "") +
                       (::access(path.c_str(), W_OK) == 0 ? "w" : "") + (r.name[0] == '.' ? "h" : "");
        r.media = isMediaFile(path);
        rows.push_back(std::move(r));
    }
    sortRows(rows, Column::Name, false);
    return rows;
}

void sortRows(std::vector<FileRow>& rows, Column key, bool descending) {
    auto less = [key](const FileRow& a, const FileRow& b) {
        switch (key) {
            case Column::Size: return a.size < b.size;
            case Column::Type: return lower(a.type) < lower(b.type);
            case Column::Modified: return a.modified < b.modified;
            case Column::Attributes: return a.attributes < b.attributes;
            case Column::Width: return a.width < b.width;
            case Column::Height: return a.height < b.height;
            case Column::Pixels: return std::int64_t{a.width} * a.height < std::int64_t{b.width} * b.height;
            case Column::Name: break;
        }
        return false;
    };
    // Equal keys keep the order of their names.
    std::stable_sort(rows.begin(), rows.end(),
                     [](const FileRow& a, const FileRow& b) { return lower(a.name) < lower(b.name); });
    if (key == Column::Name) {
        if (descending) std::reverse(rows.begin(), rows.end());
        return;
    }
    if (descending)
        std::stable_sort(rows.begin(), rows.end(), [&](const FileRow& a, const FileRow& b) { return less(b, a); });
    else
        std::stable_sort(rows.begin(), rows.end(), less);
}

std::string cellText(const FileRow& row, Column column) {
    switch (column) {
        case Column::Name: return row.name;
        case Column::Size: return std::to_string(row.size);
        case Column::Type: return row.type;
        case Column::Modified: return dateText(row.modified);
        case Column::Attributes: return row.attributes;
        case Column::Width: return row.width > 0 ? std::to_string(row.width) : std::string{};
        case Column::Height: return row.height > 0 ? std::to_string(row.height) : std::string{};
        case Column::Pixels:
            return row.width > 0 ? std::to_string(std::int64_t{row.width} * row.height) : std::string{};
    }
    return {};
}

std::string fileInfoText(const FileRow& row, Language language) {
    const bool de = language == Language::German;
    std::string text = std::string(de ? "Dateiinformationen:" : "Fileinformation:") + "\n";
    text += std::string(de ? "Name: " : "Name: ") + row.name + "\n";
    if (row.width > 0)
        text += std::string(de ? "Bildgröße: " : "Picturesize: ") + std::to_string(row.width) + "  x " +
                std::to_string(row.height) + " Pixel\n";
    text += std::string(de ? "Dateigröße: " : "Filesize: ") + std::to_string(row.size) + " Byte\n";
    text += std::string(de ? "Dateidatum: " : "Filedate: ") + dateText(row.modified);
    return text;
}

}  // namespace brindle::explorer
