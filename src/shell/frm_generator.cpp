#include "shell/frm_generator.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "help/help_center.h"

namespace brindle::shell {

FrmGenerator::FrmGenerator(Session& session, editor::TextMetrics& metrics, QWidget* parent)
    : QDialog(parent), session_(session), metrics_(metrics) {
    setObjectName("FrmGenerator");
    setWindowTitle("Brindlesee - Generator");
    auto* heading = new QLabel(t("Nützliche Seiten für Ihr Album generieren:", "Generate useful pages to your album:"));
    heading->setObjectName("lblTitel");
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);

    chkVorne_ = box("ChkAlbumUmVorne", "&Umschlag vorne zum Album", "&Front cover to album");
    chkHinten_ = box("ChkUmHinten", "Umschlag &hinten zum Album", "&Back cover to album");
    chkInhalt_ = box("ChkInhalt", "&Inhaltsverzeichnis", "&Table of contents");
    optEnde_ = new QRadioButton(t("Am &Ende", "At the &end"));
    optEnde_->setObjectName("OptInhalt0");
    optEnde_->setChecked(true);
    optAnfang_ = new QRadioButton(t("Am &Anfang", "At the be&ginning"));
    optAnfang_->setObjectName("OptInhalt1");
    chkIndex_ = box("chkBildIndex", "Bild&index", "&Picture Index");
    chkSuche_ = box("chkSuchseite", "&Suchseite", "&Search page");

    auto* pages = new QGroupBox;
    auto* grid = new QGridLayout(pages);
    grid->setColumnMinimumWidth(0, 24);
    grid->addWidget(chkVorne_, 0, 0, 1, 3);
    grid->addWidget(chkInhalt_, 1, 0, 1, 3);
    grid->addWidget(optEnde_, 2, 1);
    grid->addWidget(optAnfang_, 2, 2);
    grid->addWidget(chkIndex_, 3, 0, 1, 3);
    grid->addWidget(chkSuche_, 4, 0, 1, 3);
    grid->addWidget(chkHinten_, 5, 0, 1, 3);
    grid->setColumnStretch(2, 1);

    lblStatus_ = new QLabel(" ");
    lblStatus_->setObjectName("lblStatus");
    progress_ = new QProgressBar;
    progress_->setObjectName("progress");
    progress_->setRange(0, 1);
    progress_->setValue(0);
    progress_->setTextVisible(false);

    auto* buttons = new QDialogButtonBox;
    cmdHelp_ = buttons->addButton(t("Hilfe", "Help"), QDialogButtonBox::HelpRole);
    cmdHelp_->setObjectName("cmdHilfe");
    connect(cmdHelp_, &QPushButton::clicked, this, [this] { help::showContextHelp(this); });
    cmdCancel_ = buttons->addButton(t("Abbrechen", "Cancel"), QDialogButtonBox::RejectRole);
    cmdCancel_->setObjectName("cmdAbbrechen");
    cmdOK_ = buttons->addButton("OK", QDialogButtonBox::AcceptRole);
    cmdOK_->setObjectName("cmdOK");
    cmdOK_->setDefault(true);
    connect(cmdCancel_, &QPushButton::clicked, this, &FrmGenerator::reject);
    connect(cmdOK_, &QPushButton::clicked, this, [this] {
        run();
        accept();
    });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(pages);
    layout->addWidget(lblStatus_);
    layout->addWidget(progress_);
    layout->addWidget(buttons);

    // The place of the contents counts only while contents are wanted; OK
    // only when there is something to make.
    auto update = [this] {
        optEnde_->setEnabled(!busy_ && chkInhalt_->isChecked());
        optAnfang_->setEnabled(!busy_ && chkInhalt_->isChecked());
        const html::SpecialPagesRequest r = request();
        cmdOK_->setEnabled(!busy_ && (r.frontCover || r.backCover || r.contents || r.search || r.pictureIndex));
    };
    for (QCheckBox* c : {chkVorne_, chkHinten_, chkInhalt_, chkIndex_, chkSuche_})
        connect(c, &QCheckBox::toggled, this, update);
    update();
    setMinimumWidth(380);
}

QString FrmGenerator::t(const char* de, const char* en) const {
    return QString::fromUtf8(brindle::tr(session_.language(), de, en));
}

QCheckBox* FrmGenerator::box(const char* name, const char* de, const char* en) {
    auto* c = new QCheckBox(t(de, en));
    c->setObjectName(name);
    return c;
}

QWidget* FrmGenerator::control(const QString& name) const { return findChild<QWidget*>(name); }

html::SpecialPagesRequest FrmGenerator::request() const {
    html::SpecialPagesRequest r;
    r.frontCover = chkVorne_->isChecked();
    r.backCover = chkHinten_->isChecked();
    r.contents = chkInhalt_->isChecked();
    r.contentsAtBeginning = optAnfang_->isChecked();
    r.search = chkSuche_->isChecked();
    r.pictureIndex = chkIndex_->isChecked();
    return r;
}

void FrmGenerator::running(bool on) {
    busy_ = on;
    for (QWidget* w : std::initializer_list<QWidget*>{chkVorne_, chkHinten_, chkInhalt_, chkIndex_, chkSuche_, optEnde_,
                                                      optAnfang_, cmdOK_})
        w->setEnabled(!on);
    if (!on) {
        optEnde_->setEnabled(chkInhalt_->isChecked());
        optAnfang_->setEnabled(chkInhalt_->isChecked());
    }
}

bool FrmGenerator::run() {
    cancel_ = false;
    running(true);
    html::GenerationCallbacks cb;
    cb.progress = [this](int done, int total, const std::string& text) {
        progress_->setRange(0, std::max(1, total));
        progress_->setValue(done);
        lblStatus_->setText(QString::fromStdString(text));
        emit status(lblStatus_->text());
        QApplication::processEvents();
    };
    cb.cancelled = [this] {
        QApplication::processEvents();
        return cancel_;
    };
    const bool finished = html::runSpecialPages(session_, metrics_, request(), cb);
    running(false);
    return finished;
}

void FrmGenerator::reject() {
    if (busy_) {
        cancel_ = true;
        return;
    }
    QDialog::reject();
}

}  // namespace brindle::shell
