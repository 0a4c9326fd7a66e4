// The session one brindlesee-cli command works in: the user's program
// directory, seeded from the installed files, recent files in its
// "settings.ini", pages without windows, and the options read from disk.
#pragma once

#include <optional>
#include <string>

#include "album/diagnose.h"
#include "album/options_file.h"
#include "album/page_editor.h"
#include "album/session.h"
#include "album/settings_store.h"
#include "shell/startup.h"

namespace brindle::cli {

class CliSession {
public:
    // `language` overrides the one the options name.
    explicit CliSession(Prompter& prompter, std::optional<Language> language = std::nullopt)
        : programDirectory_(seededProgramDirectory()),
          settings_(programDirectory_ + "settings.ini"),
          session_(programDirectory_, prompter, settings_, editors_, diagnoseSink(programDirectory_)) {
        session_.state().options = loadOptions(programDirectory_);
        if (language) session_.state().options.language = languageName(*language);
        startAlbumApplication(session_, {});
    }
    CliSession(const CliSession&) = delete;
    CliSession& operator=(const CliSession&) = delete;

    Session& session() { return session_; }
    const std::string& programDirectory() const { return programDirectory_; }

private:
    static std::string seededProgramDirectory() {
        const std::string prog = resolveProgramDirectory();
        seedProgramDirectory(prog, installedResourceDirectory());
        return prog;
    }

    std::string programDirectory_;
    IniSettingsStore settings_;
    WindowlessEditorFactory editors_;
    Session session_;
};

}  // namespace brindle::cli
