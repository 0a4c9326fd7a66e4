// Design list files: text, one step per line. Lines end in CR LF when
// written; LF alone is read too. The text is a file string of the album
// rule, taken for the whole file: Windows-1252 when every character fits,
// else UTF-8.
#include "studio/design_list.h"

#include <filesystem>
#include <string_view>

#include "album/encoding.h"
#include "album/file_io.h"

namespace brindle::studio {
namespace {

// A list of hundreds of steps is a few kilobytes; a megabyte is no list.
constexpr std::size_t kMaxListBytes = 1u << 20;
constexpr const char* kTooLarge = "the file is larger than 1 MiB and cannot be a design list";

bool tooLarge(const std::string& path) {
    std::error_code ec;
    const auto size = std::filesystem::file_size(path, ec);
    return !ec && size > kMaxListBytes;
}

}  // namespace

DesignListRead readDesignList(const std::string& path) {
    DesignListRead result;
    std::string bytes;
    const IoResult read = readWholeFile(path, bytes, kMaxListBytes);
    if (!read.ok) {
        result.error = tooLarge(path) ? kTooLarge : read.error;
        return result;
    }
    return parseDesignList(bytes);
}

DesignListRead parseDesignList(std::string_view bytes) {
    DesignListRead result;
    if (bytes.size() > kMaxListBytes) {
        result.error = kTooLarge;
        return result;
    }
    if (bytes.find('\0') != std::string_view::npos) {
        result.error = "the file holds NUL characters and is not a text file";
        return result;
    }
    const std::string text = decodeFileString(bytes);
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::size_t end = rest.find('\n');
        std::string_view line = rest.substr(0, end);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        result.lines.emplace_back(line);
    }
    result.ok = true;
    return result;
}

std::string encodeDesignList(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line;
        text += "\r\n";
    }
    return encodeFileString(text);
}

bool writeDesignList(const std::string& path, const std::vector<std::string>& lines,
                     std::string* error) {
    const IoResult written = writeFileAtomic(path, encodeDesignList(lines));
    if (!written.ok && error) *error = written.error;
    return written.ok;
}

}  // namespace brindle::studio
