// A Prompter that answers from a script and records every question, so
// tests can assert the exact texts, titles and flags in order.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "album/page_editor.h"
#include "album/prompter.h"

namespace brindle::test {

class ScriptedPrompter : public Prompter {
public:
    // Every question, as "kind|title|flags|text" or "kind|filterIndex|start|proposed".
    std::vector<std::string> asked;
    std::deque<int> answers;             // for questions, askYesNoAll, unsavedFiles (default kYes)
    std::deque<std::string> files;       // for open/save/directory dialogs (default: cancel)
    std::deque<std::string> inputs;      // for inputText (default: cancel)

    int message(const std::string& text, int flags, const std::string& title) override {
        asked.push_back("message|" + title + "|" + std::to_string(flags) + "|" + text);
        if ((flags & 7) == kButtonsOk) return kOk;  // a notice takes no scripted answer
        return next(kYes);
    }
    int askYesNoAll(const std::string& text, const std::string& title) override {
        asked.push_back("yesnoall|" + title + "|" + text);
        return next(kYes);
    }
    std::string openFile(const FileDialog& d) override { return dialog("open", d); }
    std::string saveFile(const FileDialog& d) override { return dialog("save", d); }
    std::string chooseDirectory(const std::string& title, const std::string& start) override {
        asked.push_back("directory|" + title + "|" + start);
        return nextFile();
    }
    std::optional<std::string> inputText(const std::string& prompt, const std::string& title,
                                         const std::string& proposal) override {
        asked.push_back("input|" + title + "|" + prompt + "|" + proposal);
        if (inputs.empty()) return std::nullopt;
        std::string s = inputs.front();
        inputs.pop_front();
        return s;
    }
    int unsavedFiles(const std::vector<std::string>& lines, const std::string& title) override {
        std::string joined;
        for (const auto& l : lines) joined += l + ";";
        asked.push_back("unsaved|" + title + "|" + joined);
        return next(kYes);
    }

private:
    int next(int fallback) {
        if (answers.empty()) return fallback;
        int a = answers.front();
        answers.pop_front();
        return a;
    }
    std::string nextFile() {
        if (files.empty()) return {};
        std::string f = files.front();
        files.pop_front();
        return f;
    }
    std::string dialog(const char* kind, const FileDialog& d) {
        asked.push_back(std::string(kind) + "|" + std::to_string(d.filterIndex) + "|" + d.startDirectory + "|" +
                        d.proposedName);
        return nextFile();
    }
};

// Editors that record what the flows did to them.
class RecordingEditor : public PageEditor {
public:
    explicit RecordingEditor(std::vector<std::string>& events, int slot) : events_(events), slot_(slot) {}
    void show() override { events_.push_back("show " + std::to_string(slot_)); }
    void activate() override { events_.push_back("activate " + std::to_string(slot_)); }
    void unload() override { events_.push_back("unload " + std::to_string(slot_)); }
    void setCaption(const std::string& c) override { caption_ = c; }
    std::string caption() const override { return caption_; }
    void setRemoveMenuText(const std::string& t) override { events_.push_back("menu " + t); }

private:
    std::vector<std::string>& events_;
    int slot_;
    std::string caption_;
};

class RecordingEditorFactory : public PageEditorFactory {
public:
    std::vector<std::string> events;
    std::unique_ptr<PageEditor> create(int slot, std::string&) override {
        events.push_back("create " + std::to_string(slot));
        return std::make_unique<RecordingEditor>(events, slot);
    }
};

}  // namespace brindle::test
