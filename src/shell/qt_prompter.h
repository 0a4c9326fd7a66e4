// The Prompter of the desktop program: Qt message boxes and file, folder
// and input dialogs, with German or English buttons. Callable from any
// thread; the dialogs always open on the GUI thread.
#pragma once

#include <QString>
#include <functional>

#include "album/language.h"
#include "album/prompter.h"

class QFileDialog;
class QWidget;

namespace brindle::shell {

class QtPrompter : public Prompter {
public:
    // `parent` gives the window dialogs belong to; `language` the session's language.
    QtPrompter(std::function<QWidget*()> parent, std::function<Language()> language);

    int message(const std::string& text, int flags, const std::string& title) override;
    int askYesNoAll(const std::string& text, const std::string& title) override;
    std::string openFile(const FileDialog& dialog) override;
    std::string saveFile(const FileDialog& dialog) override;
    std::string chooseDirectory(const std::string& title, const std::string& startDirectory) override;
    std::optional<std::string> inputText(const std::string& prompt, const std::string& title,
                                         const std::string& proposal) override;
    int unsavedFiles(const std::vector<std::string>& lines, const std::string& title) override;

private:
    QWidget* parent() const { return parent_ ? parent_() : nullptr; }
    bool german() const { return !language_ || language_() == Language::German; }

    std::function<QWidget*()> parent_;
    std::function<Language()> language_;
};

// Qt's own file dialog, large enough and with columns that show whole.
void prepareFileDialog(QFileDialog& dialog);

// "Text|*.a;*.b|Text|*.c" as Qt's "Text (*.a *.b);;Text (*.c)".
QString qtFileFilter(const std::string& filter, int index, QString* selected);
// CR LF and CR become line breaks.
QString messageText(const std::string& text);

}  // namespace brindle::shell
