// A session with a fresh album and an output folder, and helpers to write
// its pages and read them back.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "html/html_run.h"
#include "html/page_html.h"
#include "html/staging.h"
#include "support/session_fixture.h"

namespace brindle::html {

namespace fs = std::filesystem;

// Lines joined with CR LF, each line ended.
inline std::string crlf(std::initializer_list<std::string> lines) {
    std::string s;
    for (const auto& l : lines) s += l + "\r\n";
    return s;
}

inline StageRequest stage(const std::string& source, const std::string& html, bool reduce, int w = 0, int h = 0,
                   int pw = 0, int ph = 0) {
    StageRequest r;
    r.source = source;
    r.htmlPath = html;
    r.reduce = reduce;
    r.width = w;
    r.height = h;
    r.pictureWidth = pw;
    r.pictureHeight = ph;
    return r;
}

class HtmlTest : public test::SessionTest {
protected:
    Session& freshAlbum(int pages) {
        Session& s = start();
        AlbumRecord& a = s.album();
        a.pageDefaults.background.clear();
        a.pageDefaults.props = PageProps{};
        for (int i = 0; i < pages; ++i) s.neueSeite("", false);
        fs::create_directories(path("out"));
        run = std::make_unique<HtmlRun>(s, path("out/"));
        return s;
    }
    std::string writePage(int index) {
        int slot = session->album().pages[index].slot;
        const std::string file = path("out/") + session->album().pages[index].title + ".htm";
        EXPECT_TRUE(schreibeSeiteHTML(*run, file, slot, index));
        return readBytes("out/" + session->album().pages[index].title + ".htm");
    }
    PageRecord& page(int index) { return session->page(session->album().pages[index].slot); }
    // The element lines of a written page, between the button row and the end.
    std::string elements(const std::string& html) {
        const std::string start = "</P>\r\n\r\n";
        std::size_t a = html.find(start) + start.size();
        std::size_t b = html.rfind("</body>");
        return html.substr(a, b - a);
    }

    std::unique_ptr<HtmlRun> run;
};

}  // namespace brindle::html
