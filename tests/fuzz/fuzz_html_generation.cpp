// The whole road from outside files to the HTML album: an album file and a
// page file are read by the session and generated into a temporary folder.
// Input: two bytes giving the album part's length, the album record, then
// the page record. The album's page list is pointed at the page file; its
// stored page count is left as it came.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "album/album_file.h"
#include "album/file_io.h"
#include "album/page_file.h"
#include "album/session.h"
#include "album/settings_store.h"
#include "fuzz_support.h"
#include "html/generation_run.h"
#include "html/output_files.h"

namespace {

namespace fs = std::filesystem;
using namespace brindle;

class SilentPrompter : public Prompter {
public:
    int message(const std::string&, int flags, const std::string&) override { return (flags & 7) == 0 ? kOk : kNo; }
    int askYesNoAll(const std::string&, const std::string&) override { return kNo; }
    std::string openFile(const FileDialog&) override { return {}; }
    std::string saveFile(const FileDialog&) override { return {}; }
    std::string chooseDirectory(const std::string&, const std::string& start) override { return start; }
    std::optional<std::string> inputText(const std::string&, const std::string&, const std::string&) override {
        return std::nullopt;
    }
    int unsavedFiles(const std::vector<std::string>&, const std::string&) override { return kNo; }
};

const std::string& workFolder() {
    static const std::string dir = [] {
        std::string pattern = (fs::temp_directory_path() / "brindle-fuzz-html-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) __builtin_trap();
        return pattern + "/";
    }();
    return dir;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const std::size_t albumLength = std::min<std::size_t>(size - 2, data[0] | data[1] << 8);
    const std::string_view albumPart(reinterpret_cast<const char*>(data) + 2, albumLength);
    const std::string_view pagePart(reinterpret_cast<const char*>(data) + 2 + albumLength, size - 2 - albumLength);

    AlbumFile album;
    if (!decodeAlbum(fuzz::withHead(kAlbumFormat, albumPart), album).ok()) return 0;
    if (album.album.pages.upper() > 4) return 0;  // a few pages reach every path
    const std::string dir = workFolder();
    std::error_code ec;
    fs::remove_all(dir, ec);
    fs::create_directories(dir + "prog/Menü/menu-images", ec);
    fs::create_directories(dir + "out", ec);
    for (int i = 1; i <= album.album.pages.upper(); ++i) {
        album.album.pages[i].directory = dir;
        album.album.pages[i].fileName = "Seite1.apg";
    }
    std::string bytes;
    if (!encodeAlbum(album.album, bytes).ok()) return 0;
    if (!writeFileAtomic(dir + "A.apr", bytes).ok) __builtin_trap();
    if (!writeFileAtomic(dir + "Seite1.apg", fuzz::withHead(kPageFormat, pagePart)).ok) __builtin_trap();

    SilentPrompter prompter;
    IniSettingsStore settings(dir + "prog/settings.ini");
    WindowlessEditorFactory editors;
    Session session(dir + "prog/", prompter, settings, editors);
    if (!session.albumOeffnen(dir + "A.apr")) return 0;
    html::PictureServices pictures;
    pictures.writeWebPicture = [](const html::WebPicture&, std::string&) { return true; };
    pictures.pictureSize = [](const std::string&, int&, int&) { return false; };
    html::HtmlRun run(session, dir + "out/", pictures);
    run.mailMode = (data[0] & 1) != 0;
    html::generiereAlbum(run);
    // Nothing may be written beside the output folder.
    for (const auto& e : fs::recursive_directory_iterator(dir, ec)) {
        const std::string p = e.path().string();
        if (p.rfind(dir + "out", 0) == 0 || p.rfind(dir + "prog", 0) == 0) continue;
        if (p != dir + "A.apr" && p != dir + "Seite1.apg" && !html::liesInside(p, dir + "out/")) __builtin_trap();
    }
    return 0;
}
