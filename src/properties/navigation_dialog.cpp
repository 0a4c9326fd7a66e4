// FrmFrageNavigat: the pictures of the page's back, contents and forward
// buttons, or none, for this page or for every page.
#include <QCheckBox>
#include <QDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "editor/display_picture.h"
#include "editor/frm_notepad.h"
#include "properties/navigation_model.h"
#include "properties/property_dialogs.h"

namespace brindle::properties {

namespace {

class FrmFrageNavigat : public QDialog {
public:
    FrmFrageNavigat(DialogContext& context, QWidget* parent)
        : QDialog(parent), context_(context),
          model_(NavigationModel::fromPage(context.session, context.pad.tag())) {
        setObjectName("FrmFrageNavigat");
        build();
        Sprachumschaltung();
        showModel();
    }
    const NavigationModel& model() const { return model_; }

private:
    const char* t(const char* de, const char* en) const { return brindle::tr(context_.session.language(), de, en); }

    void build() {
        auto* group = new QGroupBox(this);
        group_ = group;
        auto* grid = new QGridLayout(group);
        for (int i = 0; i < 3; ++i) {
            caption_[i] = new QLabel(group);
            caption_[i]->setAlignment(Qt::AlignCenter);
            img_[i] = new QLabel(group);
            img_[i]->setObjectName(QString("ImgZurueck%1").arg(i));
            img_[i]->setAlignment(Qt::AlignCenter);
            img_[i]->setFixedSize(150, 76);
            img_[i]->setFrameShape(QFrame::StyledPanel);
            img_[i]->setAutoFillBackground(true);
            cmd_[i] = new QPushButton(group);
            cmd_[i]->setObjectName(QString("Command1_%1").arg(i));
            grid->addWidget(caption_[i], 0, i);
            grid->addWidget(img_[i], 1, i, Qt::AlignCenter);
            grid->addWidget(cmd_[i], 2, i, Qt::AlignCenter);
            connect(cmd_[i], &QPushButton::clicked, this, [this, i] {
                if (chooseButtonPicture(context_.session, model_, static_cast<NavigationButton>(i))) showModel();
            });
        }
        chkKeineButton_ = new QCheckBox(this);
        chkKeineButton_->setObjectName("chkKeineButton");
        chkKopieren_ = new QCheckBox(this);
        chkKopieren_->setObjectName("chkKopieren");
        chkFuerAlle_ = new QCheckBox(this);
        chkFuerAlle_->setObjectName("chkFuerAlle");
        connect(chkKeineButton_, &QCheckBox::toggled, this, [this](bool on) {
            if (filling_) return;
            model_.noButton = on;
            showModel();
        });
        connect(chkKopieren_, &QCheckBox::toggled, this, [this](bool on) { model_.copyToAlbum = on; });
        connect(chkFuerAlle_, &QCheckBox::toggled, this, [this](bool on) { model_.forAll = on; });
        cmdOK_ = new QPushButton(this);
        cmdOK_->setObjectName("cmdOK");
        cmdOK_->setDefault(true);
        cmdAbbrechen_ = new QPushButton(this);
        cmdAbbrechen_->setObjectName("cmdAbbrechen");
        connect(cmdOK_, &QPushButton::clicked, this, &QDialog::accept);
        connect(cmdAbbrechen_, &QPushButton::clicked, this, &QDialog::reject);
        auto* buttons = new QHBoxLayout;
        buttons->addStretch();
        buttons->addWidget(cmdOK_);
        buttons->addWidget(cmdAbbrechen_);
        auto* all = new QVBoxLayout(this);
        all->addWidget(group);
        all->addWidget(chkKeineButton_);
        all->addWidget(chkKopieren_);
        all->addWidget(chkFuerAlle_);
        all->addSpacing(6);
        all->addLayout(buttons);
    }

    void Sprachumschaltung() {
        setWindowTitle(t("Navigationsbuttons", "Navigation buttons"));
        group_->setTitle(t("Bilder der Buttons", "Pictures of the buttons"));
        caption_[0]->setText(t("Zurück", "Back"));
        caption_[1]->setText(t("Inhalt", "Contents"));
        caption_[2]->setText(t("Vor", "Forward"));
        for (QPushButton* b : cmd_) b->setText(t("Suchen ...", "Search ..."));
        chkKeineButton_->setText(t("Kein Button", "No Button"));
        chkKopieren_->setText(t("In das Albumverzeichnis kopieren", "Copy to album directory"));
        chkFuerAlle_->setText(t("Alle Seiten, einschließlich Vorlage", "All sides, including template"));
        cmdOK_->setText("OK");
        cmdAbbrechen_->setText(t("Abbrechen", "Cancel"));
    }

    void showModel() {
        filling_ = true;
        chkKeineButton_->setChecked(model_.noButton);
        chkKopieren_->setChecked(model_.copyToAlbum);
        chkFuerAlle_->setChecked(model_.forAll);
        filling_ = false;
        const std::array<std::string, 3> paths = model_.paths();
        const SessionState& s = context_.session.state();
        for (int i = 0; i < 3; ++i) {
            img_[i]->setPixmap({});
            img_[i]->setText(paths[i].empty() ? t("(kein Button)", "(no button)") : QString());
            if (paths[i].empty()) continue;
            const QImage picture = editor::loadDisplayPicture(
                editor::displayPath(paths[i], s.album.directory, s.programDirectory), {}, false);
            if (picture.isNull()) {
                const Language lang = context_.session.language();
                context_.prompter.message(buttonLoadError(lang, paths[i]), kButtonsOk | kIconCritical,
                                          buttonLoadErrorTitle(lang));
                img_[i]->setText("?");
                continue;
            }
            img_[i]->setPixmap(QPixmap::fromImage(
                picture.scaled(img_[i]->size() - QSize(8, 8), Qt::KeepAspectRatio, Qt::SmoothTransformation)));
        }
    }

    DialogContext& context_;
    NavigationModel model_;
    bool filling_ = false;
    QGroupBox* group_;
    QLabel* caption_[3];
    QLabel* img_[3];
    QPushButton* cmd_[3];
    QCheckBox* chkKeineButton_;
    QCheckBox* chkKopieren_;
    QCheckBox* chkFuerAlle_;
    QPushButton* cmdOK_;
    QPushButton* cmdAbbrechen_;
};

// The buttons are drawn anew on every open page, in front of the elements.
void redrawButtons(DialogContext& context) {
    context.pad.canvas()->reloadPage();
    for (auto& editor : context.session.state().pageEditors)
        if (auto* e = dynamic_cast<editor::NotePadEditor*>(editor.get()))
            if (e->window() && e->window()->pad()) e->window()->pad()->canvas()->reloadPage();
}

}  // namespace

bool showNavigationProperties(DialogContext& context) {
    FrmFrageNavigat dialog(context, context.parent);
    if (dialog.exec() != QDialog::Accepted) return false;
    applyNavigation(context.session, context.pad.tag(), dialog.model());
    redrawButtons(context);
    return true;
}

}  // namespace brindle::properties
