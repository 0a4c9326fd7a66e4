#include "explorer/explorer_options.h"

#include <optional>
#include <vector>

#include "album/file_io.h"
#include "album/paths.h"

namespace brindle::explorer {

namespace {

constexpr std::string_view kHead = "BrindleseeExplorer 1";
// A folder path longer than this is not one a window showed.
constexpr std::size_t kMaxValueBytes = 8192;

// A whole number in [lo, hi]; nothing for anything else (no overflow: at
// most nine digits are taken).
std::optional<int> parseInt(std::string_view s, int lo, int hi) {
    bool negative = false;
    if (!s.empty() && s.front() == '-') {
        negative = true;
        s.remove_prefix(1);
    }
    if (s.empty() || s.size() > 9) return std::nullopt;
    int value = 0;
    for (char c : s) {
        if (c < '0' || c > '9') return std::nullopt;
        value = value * 10 + (c - '0');
    }
    if (negative) value = -value;
    if (value < lo || value > hi) return std::nullopt;
    return value;
}

std::vector<std::string_view> splitCommas(std::string_view s) {
    std::vector<std::string_view> out;
    while (true) {
        const std::size_t comma = s.find(',');
        out.push_back(s.substr(0, comma));
        if (comma == std::string_view::npos) return out;
        s.remove_prefix(comma + 1);
    }
}

std::string escapeValue(const std::string& s) {
    std::string out;
    for (char c : s) {
        if (c == '\\') out += "\\\\";
        else if (c == '\n') out += "\\n";
        else if (c == '\r') out += "\\r";
        else out += c;
    }
    return out;
}

std::optional<std::string> unescapeValue(std::string_view s) {
    if (s.size() > 2 * kMaxValueBytes) return std::nullopt;
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] != '\\') {
            out += s[i];
            continue;
        }
        if (++i == s.size()) return std::nullopt;
        if (s[i] == '\\') out += '\\';
        else if (s[i] == 'n') out += '\n';
        else if (s[i] == 'r') out += '\r';
        else return std::nullopt;
    }
    if (out.size() > kMaxValueBytes) return std::nullopt;
    return out;
}

void readBool(std::string_view value, bool& target) {
    if (value == "0") target = false;
    else if (value == "1") target = true;
}

void readColumns(std::string_view value, ExplorerOptions& o) {
    const std::vector<std::string_view> parts = splitCommas(value);
    if (parts.size() != o.columnWidths.size()) return;
    std::array<int, kColumnCount> widths{};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::optional<int> w = parseInt(parts[i], 0, kMaxColumnWidth);
        if (!w) return;
        widths[i] = *w;
    }
    o.columnWidths = widths;
}

void readGeometry(std::string_view value, ExplorerOptions& o) {
    const std::vector<std::string_view> parts = splitCommas(value);
    if (parts.size() != 4) return;
    const auto x = parseInt(parts[0], -kMaxWindowExtent, kMaxWindowExtent);
    const auto y = parseInt(parts[1], -kMaxWindowExtent, kMaxWindowExtent);
    const auto w = parseInt(parts[2], 0, kMaxWindowExtent);
    const auto h = parseInt(parts[3], 0, kMaxWindowExtent);
    if (!x || !y || !w || !h) return;
    o.x = *x;
    o.y = *y;
    o.width = *w;
    o.height = *h;
}

void readSetting(std::string_view key, std::string_view value, ExplorerOptions& o) {
    if (key == "view") {
        if (auto v = parseInt(value, 0, 4)) o.view = static_cast<ViewMode>(*v);
    } else if (key == "sort") {
        if (auto k = sortKeyFromName(std::string(value))) o.sort = *k;
    } else if (key == "descending") {
        readBool(value, o.descending);
    } else if (key == "columns") {
        readColumns(value, o);
    } else if (key == "thumbsize") {
        if (auto v = parseInt(value, kMinOptionsThumbnailSize, kMaxOptionsThumbnailSize)) o.thumbnailSize = *v;
    } else if (key == "filter") {
        if (auto v = parseInt(value, 0, 999)) o.filter = *v;
    } else if (key == "folder") {
        if (auto v = unescapeValue(value)) o.folder = *v;
    } else if (key == "geometry") {
        readGeometry(value, o);
    } else if (key == "maximized") {
        readBool(value, o.maximized);
    } else if (key == "tree") {
        if (auto v = parseInt(value, 0, kMaxWindowExtent)) o.treeWidth = *v;
    }
}

}  // namespace

ExplorerOptions decodeExplorerOptions(std::string_view text) {
    ExplorerOptions o;
    if (text.size() > kMaxOptionsFileBytes) return o;
    std::size_t lineNo = 0;
    while (!text.empty()) {
        std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (lineNo++ == 0) {
            if (line != kHead) return o;  // not our file
            continue;
        }
        const std::size_t eq = line.find('=');
        if (eq == std::string_view::npos) continue;
        readSetting(line.substr(0, eq), line.substr(eq + 1), o);
    }
    return o;
}

std::string encodeExplorerOptions(const ExplorerOptions& o) {
    std::string out(kHead);
    out += "\n";
    auto line = [&out](const char* key, const std::string& value) { out += std::string(key) + "=" + value + "\n"; };
    line("view", std::to_string(static_cast<int>(o.view)));
    line("sort", sortKeyName(o.sort));
    line("descending", o.descending ? "1" : "0");
    std::string columns;
    for (std::size_t i = 0; i < o.columnWidths.size(); ++i)
        columns += (i ? "," : "") + std::to_string(o.columnWidths[i]);
    line("columns", columns);
    line("thumbsize", std::to_string(o.thumbnailSize));
    line("filter", std::to_string(o.filter));
    line("folder", escapeValue(o.folder));
    line("geometry", std::to_string(o.x) + "," + std::to_string(o.y) + "," + std::to_string(o.width) + "," +
                         std::to_string(o.height));
    line("maximized", o.maximized ? "1" : "0");
    line("tree", std::to_string(o.treeWidth));
    return out;
}

ExplorerOptions loadExplorerOptions(const std::string& programDirectory) {
    std::string text;
    if (!readWholeFile(withTrailingSeparator(programDirectory) + kExplorerOptionsFile, text, kMaxOptionsFileBytes).ok)
        return {};
    return decodeExplorerOptions(text);
}

bool saveExplorerOptions(const std::string& programDirectory, const ExplorerOptions& options,
                         Prompter& prompter, Language language) {
    const IoResult r =
        writeFileAtomic(withTrailingSeparator(programDirectory) + kExplorerOptionsFile, encodeExplorerOptions(options));
    if (r.ok) return true;
    prompter.message(tr(language, "Fehler beim speichern der Optionen: ", "Error while saving the options: ") + r.error,
                     kButtonsOk | kIconCritical, tr(language, "Fehler", "Error"));
    return false;
}

}  // namespace brindle::explorer
