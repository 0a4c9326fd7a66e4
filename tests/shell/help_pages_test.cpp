// The help pages as shipped: every window's page in both languages, each
// readable, titled, showing its window in its own language, and with no
// link or picture that leads nowhere.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/temp_home.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

// clang-format off
const char* const kPages[] = {
    "index",
    "main-window", "album-explorer", "wizard", "catalogue", "options", "useful-pages",
    "page-editor", "play-mode",
    "text-properties", "picture-properties", "background-properties", "navigation-buttons", "panorama-properties",
    "html-album",
    "photo-design", "red-eye", "resize", "split", "panorama-stitcher", "seam-editor", "print", "video-maker",
    "scanner",
    "explorer", "full-view", "rename-many",
    "command-line", "about", "hints"};
// clang-format on

// Pages about no single window of their own.
const std::set<std::string> kWithoutPicture = {"index", "command-line", "html-album"};
// Their windows' pictures are taken once those windows exist.
std::string readFile(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

bool validUtf8(const std::string& text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto c = static_cast<unsigned char>(text[i]);
        const int extra = c < 0x80                ? 0
                          : c >= 0xC2 && c < 0xE0 ? 1
                          : (c >> 4) == 0xE       ? 2
                          : c >= 0xF0 && c < 0xF5 ? 3
                                                  : -1;
        if (extra < 0 || i + std::size_t(extra) >= text.size()) return false;
        for (int k = 1; k <= extra; ++k)
            if ((static_cast<unsigned char>(text[i + std::size_t(k)]) & 0xC0) != 0x80) return false;
        i += std::size_t(extra) + 1;
    }
    return true;
}

std::vector<std::string> attributes(const std::string& html, const std::string& tag,
                                    const std::string& name) {
    std::vector<std::string> values;
    const std::regex pattern("<" + tag + "\\b[^>]*\\b" + name + "=\"([^\"]*)\"", std::regex::icase);
    for (auto it = std::sregex_iterator(html.begin(), html.end(), pattern);
         it != std::sregex_iterator(); ++it)
        values.push_back((*it)[1]);
    return values;
}

bool isExternal(const std::string& link) {
    return link.rfind("http:", 0) == 0 || link.rfind("https:", 0) == 0 ||
           link.rfind("mailto:", 0) == 0 || link.rfind("#", 0) == 0;
}

// A PNG's width from its header, 0 when it is none.
unsigned pngWidth(const std::string& bytes) {
    if (bytes.size() < 24 || bytes.compare(0, 8, "\x89PNG\r\n\x1a\n") != 0) return 0;
    unsigned w = 0;
    for (int i = 16; i < 20; ++i) w = (w << 8) | static_cast<unsigned char>(bytes[std::size_t(i)]);
    return w;
}

class HelpPagesTest : public test::TempHomeTest {};

TEST_F(HelpPagesTest, EveryPageInBothLanguagesIsWholeAndShowsItsWindow) {
    const fs::path help = BRINDLESEE_HELP_SOURCE;
    for (const std::string lang : {"de", "en"}) {
        const std::string index = readFile(help / lang / "index.html");
        for (const std::string id : kPages) {
            SCOPED_TRACE(lang + "/" + id);
            const fs::path page = help / lang / (id + ".html");
            ASSERT_TRUE(fs::is_regular_file(page));
            const std::string html = readFile(page);
            EXPECT_TRUE(validUtf8(html));
            EXPECT_NE(html.find("<meta charset=\"utf-8\">"), std::string::npos);
            EXPECT_NE(html.find("<html lang=\"" + lang + "\">"), std::string::npos);
            std::smatch title;
            EXPECT_TRUE(std::regex_search(html, title, std::regex("<title>([^<]+)</title>")));
            EXPECT_EQ(html.find("<script"), std::string::npos);
            if (id != "index") {
                EXPECT_NE(index.find("href=\"" + id + ".html\""), std::string::npos)
                    << "not in the contents";
                EXPECT_NE(html.find("href=\"index.html\""), std::string::npos)
                    << "no way back to the contents";
            }

            const std::vector<std::string> pictures = attributes(html, "img", "src");
            if (kWithoutPicture.count(id) == 0) {
                ASSERT_FALSE(pictures.empty());
                EXPECT_EQ(pictures.front(), "../images/" + id + "-" + lang + ".png");
            }
            for (const std::string& src : pictures) {
                EXPECT_EQ(src.substr(src.size() - 7), "-" + lang + ".png") << src;
                EXPECT_TRUE(fs::is_regular_file(page.parent_path() / src)) << src;
            }
            for (std::string href : attributes(html, "a", "href")) {
                if (isExternal(href)) continue;
                href = href.substr(0, href.find('#'));
                EXPECT_TRUE(fs::is_regular_file(page.parent_path() / href)) << href;
            }
        }
    }
}

TEST_F(HelpPagesTest, PicturesAreSmallAndEachIsShown) {
    const fs::path help = BRINDLESEE_HELP_SOURCE;
    std::set<std::string> shown;
    for (const std::string lang : {"de", "en"})
        for (const std::string id : kPages)
            for (const std::string& src :
                 attributes(readFile(help / lang / (id + ".html")), "img", "src"))
                shown.insert(fs::path(src).filename().string());
    std::uintmax_t total = 0;
    for (const auto& entry : fs::directory_iterator(help / "images")) {
        const std::string name = entry.path().filename().string();
        SCOPED_TRACE(name);
        EXPECT_EQ(shown.count(name), 1u) << "no page shows it";
        const unsigned width = pngWidth(readFile(entry.path()));
        EXPECT_GT(width, 0u);
        EXPECT_LE(width, 760u);
        total += entry.file_size();
    }
    EXPECT_LT(total, 8u * 1024 * 1024);
}

TEST_F(HelpPagesTest, TheBuildCopiesThePagesBesideTheOtherResources) {
    const fs::path source = BRINDLESEE_HELP_SOURCE;
    const fs::path built = BRINDLESEE_HELP_BUILT;
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(source)) {
        if (!entry.is_regular_file()) continue;
        const fs::path copy = built / fs::relative(entry.path(), source);
        SCOPED_TRACE(copy.string());
        ASSERT_TRUE(fs::is_regular_file(copy));
        EXPECT_EQ(readFile(copy), readFile(entry.path()));
        ++files;
    }
    EXPECT_GE(files, 60);
}

}  // namespace
}  // namespace brindle
