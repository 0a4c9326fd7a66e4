// FrmGenerator: "Brindlesee - Generator", which adds covers, contents,
// search page and picture index to the album. The pages are made by the
// core (html/special_pages.h); the dialog picks them, shows the progress
// and lets the user stop between pages.
#pragma once

#include <QDialog>

#include "album/session.h"
#include "editor/text_fit.h"
#include "html/special_pages.h"

class QAbstractButton;
class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QRadioButton;

namespace brindle::shell {

class FrmGenerator : public QDialog {
    Q_OBJECT
public:
    FrmGenerator(Session& session, editor::TextMetrics& metrics, QWidget* parent = nullptr);

    // A control by its name ("ChkInhalt", "OptInhalt1", "cmdOK", ...).
    QWidget* control(const QString& name) const;
    html::SpecialPagesRequest request() const;
    // Runs the chosen pages; false when the user stopped it.
    bool run();
    // While the pages are made, Cancel and Escape stop after the current page.
    void reject() override;

signals:
    // Each status text of the run, for the main window's status line.
    void status(const QString& text);

private:
    QString t(const char* de, const char* en) const;
    QCheckBox* box(const char* name, const char* de, const char* en);
    void running(bool on);

    Session& session_;
    editor::TextMetrics& metrics_;
    QCheckBox* chkVorne_ = nullptr;
    QCheckBox* chkHinten_ = nullptr;
    QCheckBox* chkInhalt_ = nullptr;
    QRadioButton* optEnde_ = nullptr;
    QRadioButton* optAnfang_ = nullptr;
    QCheckBox* chkIndex_ = nullptr;
    QCheckBox* chkSuche_ = nullptr;
    QLabel* lblStatus_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QPushButton* cmdOK_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QPushButton* cmdHelp_ = nullptr;
    bool busy_ = false;
    bool cancel_ = false;
};

}  // namespace brindle::shell
