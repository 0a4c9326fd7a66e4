#include "explorer/rename_many_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace brindle::explorer {

FrmUmbenennenMulti::FrmUmbenennenMulti(Language language, QWidget* parent) : QDialog(parent) {
    setObjectName("frmUmbenennenMulti");
    auto t = [language](const char* german, const char* english) {
        return QString::fromUtf8(brindle::tr(language, german, english));
    };
    setWindowTitle(t("Mehrere Dateien umbenennen", "Rename several files"));
    cmbSuchenNach_ = new QComboBox;
    cmbSuchenNach_->setObjectName("cmbSuchenNach");
    cmbSuchenNach_->setEditable(true);
    cmbErsetztenDurch_ = new QComboBox;
    cmbErsetztenDurch_->setObjectName("cmbErsetztenDurch");
    cmbErsetztenDurch_->setEditable(true);
    chkGroßKlein_ = new QCheckBox(t("Groß- und Kleinschreibung beachten", "Case sensitive"));
    chkGroßKlein_->setObjectName("chkGroßKlein");
    chkKleinschreibung_ = new QCheckBox(t("Alles in Kleinbuchstaben", "All in small letters"));
    chkKleinschreibung_->setObjectName("chkKleinschreibung");
    // Small letters for all names leave nothing to search and replace.
    connect(chkKleinschreibung_, &QCheckBox::toggled, this, [this](bool on) {
        cmbSuchenNach_->setEnabled(!on);
        cmbErsetztenDurch_->setEnabled(!on);
        chkGroßKlein_->setEnabled(!on);
    });

    auto* form = new QFormLayout;
    form->addRow(t("Suchen nach:", "Search for:"), cmbSuchenNach_);
    form->addRow(t("Ersetzen durch:", "Replace with:"), cmbErsetztenDurch_);
    form->addRow(QString(), chkGroßKlein_);
    form->addRow(QString(), chkKleinschreibung_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->setObjectName("buttons");
    buttons->button(QDialogButtonBox::Cancel)->setText(t("Abbrechen", "Cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

RenameRule FrmUmbenennenMulti::rule() const {
    RenameRule r;
    r.search = cmbSuchenNach_->currentText().toStdString();
    r.replace = cmbErsetztenDurch_->currentText().toStdString();
    r.caseSensitive = chkGroßKlein_->isChecked();
    r.allLowerCase = chkKleinschreibung_->isChecked();
    return r;
}

}  // namespace brindle::explorer
