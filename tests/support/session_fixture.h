#pragma once

#include <memory>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/session.h"
#include "support/scripted_prompter.h"
#include "support/temp_home.h"

namespace brindle::test {

class SessionTest : public TempHomeTest {
protected:
    void SetUp() override {
        TempHomeTest::SetUp();
        settings = std::make_unique<IniSettingsStore>(path("settings.ini"));
    }
    // A new session on the folder; `log` receives the test-mode lines.
    Session& start(Language lang = Language::German) {
        session = std::make_unique<Session>(home(), prompter, *settings, editors,
                                            [this](const std::string& l) { log.push_back(l); });
        session->state().language = lang;
        return *session;
    }
    // An album saved in the folder with `pages` pages saved beside it.
    std::string writeAlbum(const std::string& name, int pages) {
        AlbumRecord a;
        ladeStandards(a, home());
        for (int i = 1; i <= pages; ++i) {
            std::string title = "Seite" + std::to_string(i);
            a.pages.add() = PageEntry{title, title + ".apg", home(), 0};
            PageRecord p = a.pageDefaults;
            p.texts.add().text = "Text " + title;
            EXPECT_TRUE(writePageFile(path(title + ".apg"), p).ok());
        }
        a.pageCount = static_cast<std::int16_t>(pages);
        EXPECT_TRUE(writeAlbumFile(path(name), a).ok());
        return path(name);
    }

    ScriptedPrompter prompter;
    RecordingEditorFactory editors;
    std::unique_ptr<IniSettingsStore> settings;
    std::unique_ptr<Session> session;
    std::vector<std::string> log;
};

}  // namespace brindle::test
