#include "shell/qt_prompter.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QTreeView>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "editor/gui_thread.h"

namespace brindle::shell {

using editor::runOnGui;

QString messageText(const std::string& text) {
    QString s = QString::fromStdString(text);
    s.replace("\r\n", "\n");
    s.replace('\r', '\n');
    return s;
}

QString qtFileFilter(const std::string& filter, int index, QString* selected) {
    const QStringList parts = QString::fromStdString(filter).split('|');
    QStringList entries;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1];
        patterns.replace(';', ' ');
        const QString entry = parts[i] + " (" + patterns + ")";
        entries << entry;
        if (selected && i / 2 + 1 == index) *selected = entry;
    }
    return entries.join(";;");
}

QtPrompter::QtPrompter(std::function<QWidget*()> parent, std::function<Language()> language)
    : parent_(std::move(parent)), language_(std::move(language)) {}

int QtPrompter::message(const std::string& text, int flags, const std::string& title) {
    int result = kCancel;
    runOnGui(qApp, [&] {
        QMessageBox box(parent());
        box.setWindowTitle(QString::fromStdString(title));
        box.setText(messageText(text));
        switch (flags & 0x70) {
            case kIconCritical: box.setIcon(QMessageBox::Critical); break;
            case kIconQuestion: box.setIcon(QMessageBox::Question); break;
            case kIconExclamation: box.setIcon(QMessageBox::Warning); break;
            case kIconInformation: box.setIcon(QMessageBox::Information); break;
            default: break;
        }
        const bool de = german();
        std::vector<std::pair<QPushButton*, int>> buttons;
        auto add = [&](const char* g, const char* e, QMessageBox::ButtonRole role, int code) {
            buttons.emplace_back(box.addButton(de ? g : e, role), code);
        };
        switch (flags & 7) {
            case kButtonsYesNoCancel:
                add("&Ja", "&Yes", QMessageBox::YesRole, kYes);
                add("&Nein", "&No", QMessageBox::NoRole, kNo);
                add("Abbrechen", "Cancel", QMessageBox::RejectRole, kCancel);
                break;
            case kButtonsYesNo:
                add("&Ja", "&Yes", QMessageBox::YesRole, kYes);
                add("&Nein", "&No", QMessageBox::NoRole, kNo);
                break;
            case 1:
                add("OK", "OK", QMessageBox::AcceptRole, kOk);
                add("Abbrechen", "Cancel", QMessageBox::RejectRole, kCancel);
                break;
            default:
                add("OK", "OK", QMessageBox::AcceptRole, kOk);
                break;
        }
        const int defaultIndex = (flags & 0x300) >> 8;
        if (defaultIndex < int(buttons.size())) box.setDefaultButton(buttons[std::size_t(defaultIndex)].first);
        box.exec();
        result = (flags & 7) == kButtonsYesNo ? kNo : (flags & 7) == kButtonsOk ? kOk : kCancel;
        for (const auto& [button, code] : buttons)
            if (box.clickedButton() == button) result = code;
    });
    return result;
}

int QtPrompter::askYesNoAll(const std::string& text, const std::string& title) {
    int result = kNo;
    runOnGui(qApp, [&] {
        QMessageBox box(parent());
        box.setWindowTitle(QString::fromStdString(title));
        box.setText(messageText(text));
        box.setIcon(QMessageBox::Question);
        const bool de = german();
        const std::pair<QPushButton*, int> buttons[] = {
            {box.addButton(de ? "&Ja" : "&Yes", QMessageBox::YesRole), kYes},
            {box.addButton(de ? "Ja, &alle" : "Yes to &all", QMessageBox::YesRole), kYesToAll},
            {box.addButton(de ? "&Nein" : "&No", QMessageBox::NoRole), kNo},
            {box.addButton(de ? "Nein, &keine" : "No to a&ll", QMessageBox::NoRole), kNoToAll},
        };
        box.exec();
        for (const auto& [button, code] : buttons)
            if (box.clickedButton() == button) result = code;
    });
    return result;
}

void prepareFileDialog(QFileDialog& dialog) {
    // Qt's own dialog, so it speaks the session's language like the rest.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setViewMode(QFileDialog::Detail);
    dialog.resize(std::max(dialog.width(), 860), std::max(dialog.height(), 520));
    // Size, type and date show whole; the name takes the rest.
    if (auto* view = dialog.findChild<QTreeView*>("treeView")) {
        QHeaderView* header = view->header();
        header->setStretchLastSection(false);
        header->setSectionResizeMode(QHeaderView::ResizeToContents);
        header->setSectionResizeMode(0, QHeaderView::Stretch);
    }
}

namespace {

std::vector<QString> runFileDialog(QWidget* parent, const FileDialog& d, QFileDialog::AcceptMode mode) {
    QString selected;
    const QString filter = qtFileFilter(d.filter, d.filterIndex, &selected);
    const QString start = QString::fromStdString(d.proposedName.empty() ? d.startDirectory : d.proposedName);
    QFileDialog dialog(parent, QString::fromStdString(d.title), start, filter);
    dialog.setAcceptMode(mode);
    dialog.setFileMode(mode == QFileDialog::AcceptSave ? QFileDialog::AnyFile
                       : d.multiSelect                 ? QFileDialog::ExistingFiles
                                                       : QFileDialog::ExistingFile);
    if (!selected.isEmpty()) dialog.selectNameFilter(selected);
    prepareFileDialog(dialog);
    if (dialog.exec() != QDialog::Accepted) return {};
    const QStringList files = dialog.selectedFiles();
    return {files.begin(), files.end()};
}

}  // namespace

std::string QtPrompter::openFile(const FileDialog& d) {
    std::string result;
    runOnGui(qApp, [&] {
        const std::vector<QString> files = runFileDialog(parent(), d, QFileDialog::AcceptOpen);
        if (files.size() == 1) result = files.front().toStdString();
        if (files.size() < 2) return;
        // Several files come back as the directory and the names.
        QStringList parts{QFileInfo(files.front()).absolutePath()};
        for (const QString& f : files) parts << QFileInfo(f).fileName();
        result = parts.join(';').toStdString();
    });
    return result;
}

std::string QtPrompter::saveFile(const FileDialog& d) {
    std::string result;
    runOnGui(qApp, [&] {
        const std::vector<QString> files = runFileDialog(parent(), d, QFileDialog::AcceptSave);
        if (!files.empty()) result = files.front().toStdString();
    });
    return result;
}

std::string QtPrompter::chooseDirectory(const std::string& title, const std::string& start) {
    std::string result;
    runOnGui(qApp, [&] {
        // Qt's own dialog, which carries the new-folder button.
        QFileDialog dialog(parent(), QString::fromStdString(title), QString::fromStdString(start));
        dialog.setFileMode(QFileDialog::Directory);
        dialog.setOption(QFileDialog::ShowDirsOnly);
        prepareFileDialog(dialog);
        const QString dir = dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
        if (!dir.isEmpty()) result = dir.endsWith('/') ? dir.toStdString() : (dir + '/').toStdString();
    });
    return result;
}

std::optional<std::string> QtPrompter::inputText(const std::string& prompt, const std::string& title,
                                                 const std::string& proposal) {
    std::optional<std::string> result;
    runOnGui(qApp, [&] {
        QInputDialog dialog(parent());
        dialog.setWindowTitle(QString::fromStdString(title));
        dialog.setLabelText(QString::fromStdString(prompt));
        dialog.setOkButtonText("OK");
        dialog.setCancelButtonText(german() ? "Abbrechen" : "Cancel");
        // The words of a text element may run over several lines.
        if (title == "Text") dialog.setOption(QInputDialog::UsePlainTextEditForTextInput);
        QString value = QString::fromStdString(proposal);
        value.replace("\r\n", "\n");
        dialog.setTextValue(value);
        if (dialog.exec() != QDialog::Accepted) return;
        QString text = dialog.textValue();
        if (title == "Text") text.replace("\n", "\r\n");
        result = text.toStdString();
    });
    return result;
}

int QtPrompter::unsavedFiles(const std::vector<std::string>& lines, const std::string& title) {
    int result = kCancel;
    runOnGui(qApp, [&] {
        QDialog dialog(parent());
        dialog.setObjectName("FrmUngespFiles");
        dialog.setWindowTitle("Brindlesee");
        auto* layout = new QVBoxLayout(&dialog);
        layout->addWidget(new QLabel(QString::fromStdString(title), &dialog));
        auto* list = new QListWidget(&dialog);
        for (const std::string& line : lines) list->addItem(QString::fromStdString(line));
        layout->addWidget(list);
        auto* buttons = new QDialogButtonBox(&dialog);
        const bool de = german();
        QPushButton* yes = buttons->addButton(de ? "&Ja" : "&Yes", QDialogButtonBox::YesRole);
        QPushButton* no = buttons->addButton(de ? "&Nein" : "&No", QDialogButtonBox::NoRole);
        QPushButton* cancel = buttons->addButton(de ? "Abbrechen" : "Cancel", QDialogButtonBox::RejectRole);
        layout->addWidget(buttons);
        QObject::connect(yes, &QPushButton::clicked, &dialog, [&] { result = kYes; dialog.accept(); });
        QObject::connect(no, &QPushButton::clicked, &dialog, [&] { result = kNo; dialog.accept(); });
        QObject::connect(cancel, &QPushButton::clicked, &dialog, [&] { result = kCancel; dialog.reject(); });
        dialog.exec();
    });
    return result;
}

}  // namespace brindle::shell
