#include "shell/catalogue_window.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "album/prompter.h"
#include "album/session.h"
#include "album/templates.h"
#include "image/template_preview.h"

namespace brindle::shell {

namespace {

QString catalogueFolder(const Session& s) {
    return QString::fromStdString(s.state().programDirectory + kCatalogueFolder + "/");
}

}  // namespace

CatalogueWindow::CatalogueWindow(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
    setObjectName("frmVorlagen");
    tree_ = new QTreeWidget(this);
    tree_->setObjectName("tvwVorlagen");
    tree_->setHeaderHidden(true);
    tree_->setMinimumWidth(220);
    root_ = new QTreeWidgetItem(tree_);
    preview_ = new QLabel(this);
    preview_->setObjectName("picVorschau");
    preview_->setFixedSize(kPreviewWidth + 2, kPreviewHeight + 2);
    preview_->setAlignment(Qt::AlignCenter);
    preview_->setFrameShape(QFrame::StyledPanel);
    caption_ = new QLabel(this);
    caption_->setObjectName("lblVorlage");
    caption_->setAlignment(Qt::AlignCenter);

    load_ = new QPushButton(this);
    load_->setObjectName("cmdLaden");
    load_->setDefault(true);
    export_ = new QPushButton(this);
    export_->setObjectName("cmdExport");
    import_ = new QPushButton(this);
    import_->setObjectName("cmdImport");
    close_ = new QPushButton(this);
    close_->setObjectName("cmdSchliessen");

    auto* right = new QVBoxLayout;
    right->addWidget(preview_);
    right->addWidget(caption_);
    right->addStretch(1);
    auto* top = new QHBoxLayout;
    top->addWidget(tree_, 1);
    top->addLayout(right);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(export_);
    buttons->addWidget(import_);
    buttons->addStretch(1);
    buttons->addWidget(load_);
    buttons->addWidget(close_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(buttons);

    connect(tree_, &QTreeWidget::currentItemChanged, this, [this] { showPreview(); });
    connect(tree_, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
        if (item != root_) load();
    });
    connect(load_, &QPushButton::clicked, this, &CatalogueWindow::load);
    connect(export_, &QPushButton::clicked, this, &CatalogueWindow::exportChosen);
    connect(import_, &QPushButton::clicked, this, &CatalogueWindow::importFile);
    connect(close_, &QPushButton::clicked, this, &QDialog::reject);

    refresh();
    Sprachumschaltung(session_.language());
    resize(640, 360);
}

const char* CatalogueWindow::t(const char* de, const char* en) const { return brindle::tr(session_.language(), de, en); }

void CatalogueWindow::refresh() {
    const QString chosen = chosenPath().isEmpty() ? QString() : tree_->currentItem()->data(0, Qt::UserRole).toString();
    qDeleteAll(root_->takeChildren());
    QTreeWidgetItem* current = nullptr;
    for (const std::string& name : katalogVorlagen(session_.state().programDirectory)) {
        auto* item = new QTreeWidgetItem(root_, {QString::fromStdString(name)});
        item->setData(0, Qt::UserRole, QString::fromStdString(name));
        if (!current || item->text(0) == chosen) current = item;
    }
    root_->setExpanded(true);
    tree_->setCurrentItem(current ? current : root_);
    showPreview();
}

void CatalogueWindow::choose(const QString& name) {
    for (int i = 0; i < root_->childCount(); ++i)
        if (root_->child(i)->text(0) == name) tree_->setCurrentItem(root_->child(i));
}

QString CatalogueWindow::chosenPath() const {
    QTreeWidgetItem* item = tree_->currentItem();
    if (!item || item == root_) return {};
    return catalogueFolder(session_) + item->data(0, Qt::UserRole).toString() + ".vor";
}

void CatalogueWindow::showPreview() {
    const QString vor = chosenPath();
    load_->setEnabled(!vor.isEmpty());
    export_->setEnabled(!vor.isEmpty());
    caption_->setText(vor.isEmpty() ? QString() : tree_->currentItem()->text(0));
    const QPixmap picture(vor.left(vor.size() - 4) + ".jpg");
    if (vor.isEmpty() || picture.isNull()) {
        preview_->setPixmap({});
        preview_->setText(vor.isEmpty() ? QString() : t("Keine Vorschau", "No preview"));
        return;
    }
    preview_->setPixmap(picture.scaled(kPreviewWidth, kPreviewHeight, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

void CatalogueWindow::load() {
    const QString vor = chosenPath();
    if (vor.isEmpty()) return;
    if (!neuesAlbumMitVorlage(session_, vor.toStdString())) return;
    emit albumLoaded();
    accept();
}

void CatalogueWindow::exportChosen() {
    const QString vor = chosenPath();
    if (vor.isEmpty()) return;
    FileDialog dialog;
    dialog.title = t("Vorlage exportieren", "Export template");
    dialog.filter = "Vorlagenexport (*.bsv)|*.bsv|";
    dialog.proposedName = tree_->currentItem()->text(0).toStdString() + ".bsv";
    std::string target = session_.prompter().saveFile(dialog);
    if (target.empty()) return;
    if (!target.ends_with(".bsv")) target += ".bsv";
    exportiereVorlage(session_, vor.toStdString(), target);
}

void CatalogueWindow::importFile() {
    FileDialog dialog;
    dialog.title = t("Vorlage importieren", "Import template");
    dialog.filter = "Vorlagenexport (*.bsv)|*.bsv|";
    const std::string source = session_.prompter().openFile(dialog);
    if (source.empty()) return;
    if (importiereVorlage(session_, source)) refresh();
}

void CatalogueWindow::Sprachumschaltung(Language language) {
    const bool de = language == Language::German;
    setWindowTitle(de ? "Vorlagen" : "Templates");
    root_->setText(0, de ? "Vorlagen" : "Templates");
    load_->setText(de ? "&Neues Album mit dieser Vorlage" : "&New album with this template");
    export_->setText(de ? "&Exportieren ..." : "&Export ...");
    import_->setText(de ? "&Importieren ..." : "&Import ...");
    close_->setText(de ? "&Schließen" : "&Close");
    showPreview();
}

}  // namespace brindle::shell
