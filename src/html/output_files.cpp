#include "html/output_files.h"

#include <filesystem>

#include "album/file_io.h"
#include "album/paths.h"

namespace brindle::html {

namespace fs = std::filesystem;

namespace {
// Pictures and music of an album can be large; anything past this is not
// copied whole into memory.
constexpr std::size_t kMaxCopyBytes = std::size_t{1} << 30;
}  // namespace

bool copyFileAtomic(const std::string& from, const std::string& to, std::string& error) {
    std::string bytes;
    IoResult in = readWholeFile(from, bytes, kMaxCopyBytes);
    if (!in.ok) {
        error = in.error;
        return false;
    }
    IoResult out = writeFileAtomic(to, bytes);
    error = out.error;
    return out.ok;
}

void reportCopyFailure(HtmlRun& run, const std::string& source, const std::string& error) {
    ++run.failedWrites;
    run.prompter().message(tr(run.language(), "Fehler beim Kopieren der Datei: ", "Error while copying the file: ") +
                               source + "\r" + error,
                           kIconCritical, tr(run.language(), "Fehler", "Error"));
}

bool liesInside(const std::string& path, const std::string& folder) {
    std::error_code ec;
    const fs::path file = fs::weakly_canonical(path, ec);
    if (ec) return false;
    const fs::path root = fs::weakly_canonical(withoutTrailingSeparator(folder), ec);
    if (ec) return false;
    const fs::path rel = file.lexically_relative(root);
    return !rel.empty() && *rel.begin() != ".." && rel != ".";
}

bool HtmlRun::copyInstalledFile(const std::string& name, const std::string& targetName) {
    const std::string target = outputDirectory + (targetName.empty() ? name : targetName);
    std::error_code ec;
    if (fs::exists(target, ec)) return true;
    std::string error;
    if (copyFileAtomic(programDirectory() + name, target, error)) return true;
    deferredError = error + ": " + programDirectory() + name;
    ++failedWrites;
    return false;
}

bool HtmlRun::replaceInstalledFile(const std::string& name, const std::string& targetName) {
    std::string error;
    if (copyFileAtomic(programDirectory() + name, outputDirectory + targetName, error)) return true;
    reportCopyFailure(*this, programDirectory() + name, error);
    return false;
}

}  // namespace brindle::html
