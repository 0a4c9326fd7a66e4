// frmWizzard: what happens inside the steps: the design browser, the tree of
// pages and pictures, the frame with its live preview, the folder, "Ready".
#include <QCheckBox>
#include <QColorDialog>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QLinearGradient>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTreeWidget>
#include <cstring>

#include "album/paths.h"
#include "editor/display_picture.h"
#include "image/dib_section.h"
#include "properties/colour_value.h"
#include "properties/frame_preview.h"
#include "shell/wizard_window.h"
#include "editor/qimage_dib.h"

namespace brindle::shell {

namespace {

enum NodeDepth { kRoot = 0, kPage = 1, kPicture = 2 };

int depthOf(const QTreeWidgetItem* item) {
    int depth = 0;
    for (const QTreeWidgetItem* p = item ? item->parent() : nullptr; p; p = p->parent()) ++depth;
    return item ? depth : -1;
}

std::string pictureFilter(Language lang) {
    return std::string(brindle::tr(lang, "Bilder", "Pictures")) +
           "|*.jpg;*.jpeg;*.png;*.bmp;*.gif;*.tif;*.tiff;*.pcx;*.tga|" + brindle::tr(lang, "Alle Dateien", "All files") +
           "|*.*";
}

// A picture fitted into `box`, its aspect kept.
QPixmap fitted(const QImage& image, QSize box) {
    return QPixmap::fromImage(image.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

}  // namespace

// ---------------------------------------------------------------- design

std::string FrmWizzard::designPath() const {
    if (designs_.empty()) return {};
    return wizard::designDirectory(programDirectory_) + designs_[static_cast<std::size_t>(designIndex_)];
}

void FrmWizzard::showDesign() {
    const int last = static_cast<int>(designs_.size()) - 1;
    designIndex_ = std::clamp(designIndex_, 0, std::max(0, last));
    cmdAlbumZurueck_->setEnabled(designIndex_ > 0);
    cmdAlbumVor_->setEnabled(designIndex_ < last);
    if (designs_.empty()) {
        lblDesign_->setText(t("Wählen Sie ein Design: ", "Choose a Design: "));
        image2_->setText(t("Keine Designs vorhanden: die Seiten bekommen den Standard-Hintergrund.",
                           "No designs present: the pages get the standard background."));
        image2_->setWordWrap(true);
        return;
    }
    const std::string& name = designs_[static_cast<std::size_t>(designIndex_)];
    lblDesign_->setText(t("Wählen Sie ein Design: ", "Choose a Design: ") +
                        QString::fromStdString(name.substr(0, name.size() - 4)));
    const QImage img = editor::loadDisplayPicture(QString::fromStdString(designPath()), image2_->size(), true);
    if (img.isNull()) image2_->setText(QString::fromStdString(name));
    else image2_->setPixmap(fitted(img, image2_->size() - QSize(4, 4)));
}

// ---------------------------------------------------------------- pages and pictures

QTreeWidgetItem* FrmWizzard::selectedPage() const {
    QTreeWidgetItem* item = treeView1_->currentItem();
    if (depthOf(item) == kPicture) return item->parent();
    if (depthOf(item) == kPage) return item;
    QTreeWidgetItem* root = treeView1_->topLevelItem(0);
    return root->childCount() > 0 ? root->child(root->childCount() - 1) : nullptr;
}

void FrmWizzard::cmdSeiteHinzufuegen() {
    QTreeWidgetItem* root = treeView1_->topLevelItem(0);
    auto* page = new QTreeWidgetItem(root, {QString::fromStdString(wizard::pageName(lang_, nextPageNumber_++))});
    page->setData(0, Qt::UserRole, "Seite");
    page->setFlags(page->flags() | Qt::ItemIsEditable);
    root->setExpanded(true);
    treeView1_->setCurrentItem(page);
}

void FrmWizzard::cmdBildHinzufuegen() {
    QTreeWidgetItem* page = selectedPage();
    if (!page) return;
    FileDialog d;
    d.title = t("Bilder hinzufügen", "Add pictures").toStdString();
    d.filter = pictureFilter(lang_);
    d.multiSelect = true;
    const std::string answer = prompter_.openFile(d);
    if (answer.empty()) return;
    QTreeWidgetItem* last = nullptr;
    for (const std::string& path : splitFileList(answer)) {
        std::string dir, name;
        teilePfad(path, dir, name);
        last = new QTreeWidgetItem(page, {QString::fromStdString(name)});
        last->setData(0, Qt::UserRole, "Bild");
        last->setData(0, Qt::UserRole + 1, QString::fromStdString(path));
        last->setToolTip(0, QString::fromStdString(path));
    }
    page->setExpanded(true);
    if (last) treeView1_->setCurrentItem(last);
    sample_ = QImage();  // the frame preview shows the first picture
}

void FrmWizzard::cmdBildLoeschen() {
    QTreeWidgetItem* item = treeView1_->currentItem();
    if (depthOf(item) != kPicture) return;
    delete item;
    sample_ = QImage();
    showPicturePreview();
}

void FrmWizzard::showPicturePreview() {
    QTreeWidgetItem* item = treeView1_->currentItem();
    const bool picture = depthOf(item) == kPicture;
    cmdBildLoeschen_->setEnabled(picture);
    listView1_->clear();
    if (!picture || !chkVoransicht_->isChecked()) return;
    const QString path = item->data(0, Qt::UserRole + 1).toString();
    const QImage img = editor::loadDisplayPicture(path, listView1_->size(), true);
    if (img.isNull()) listView1_->setText(t("Bild nicht lesbar", "Picture cannot be read"));
    else listView1_->setPixmap(fitted(img, listView1_->size() - QSize(4, 4)));
}

std::vector<wizard::WizardPage> FrmWizzard::pages() const {
    std::vector<wizard::WizardPage> list;
    QTreeWidgetItem* root = treeView1_->topLevelItem(0);
    for (int i = 0; i < root->childCount(); ++i) {
        QTreeWidgetItem* page = root->child(i);
        wizard::WizardPage wp;
        wp.name = page->text(0).trimmed().toStdString();
        for (int j = 0; j < page->childCount(); ++j)
            wp.pictures.push_back(page->child(j)->data(0, Qt::UserRole + 1).toString().toStdString());
        list.push_back(std::move(wp));
    }
    return list;
}

// ---------------------------------------------------------------- frame

void FrmWizzard::updateFrameControls() {
    frame_.on = optRahmenJa_->isChecked();
    frame_.width = sliders_[0]->value();
    frame_.light = sliders_[1]->value();
    frame_.shadow = sliders_[2]->value();
    frame_.texture = txtTextur_->text().trimmed().toStdString();
    for (int i = 0; i < 3; ++i) {
        sliders_[i]->setEnabled(frame_.on);
        sliderLabels_[i]->setText(QString::number(sliders_[i]->value()));
    }
    for (QWidget* w : std::initializer_list<QWidget*>{cmdFarbe_, txtTextur_, cmdTextur_}) w->setEnabled(frame_.on);
    QPixmap swatch(14, 14);
    swatch.fill(QColor(QString::fromStdString(properties::colourHex(frame_.colour))));
    cmdFarbe_->setIcon(QIcon(swatch));
    updateFramePreview();
}

const QImage& FrmWizzard::sampleImage() {
    if (!sample_.isNull()) return sample_;
    const std::vector<wizard::WizardPage> list = pages();
    for (const wizard::WizardPage& wp : list) {
        if (wp.pictures.empty()) continue;
        sample_ = editor::loadDisplayPicture(QString::fromStdString(wp.pictures.front()), QSize(220, 160), true);
        if (!sample_.isNull()) return sample_;
    }
    // No picture yet: a drawn landscape stands in.
    sample_ = QImage(220, 150, QImage::Format_RGB32);
    QPainter p(&sample_);
    QLinearGradient sky(0, 0, 0, 110);
    sky.setColorAt(0, QColor(0x7F, 0xB2, 0xE0));
    sky.setColorAt(1, QColor(0xF0, 0xD8, 0xB0));
    p.fillRect(sample_.rect(), sky);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x4F, 0x78, 0x45));
    p.drawEllipse(QPointF(60, 150), 140, 50);
    p.setBrush(QColor(0x3A, 0x5E, 0x3A));
    p.drawEllipse(QPointF(200, 155), 110, 45);
    return sample_;
}

void FrmWizzard::updateFramePreview() {
    if (!framePreview_) return;
    framePreview_->clear();
    if (!chkRahmenVorschau_->isChecked()) return;
    QImage picture = sampleImage();
    const QSize inner = picture.size().scaled(QSize(220, 160), Qt::KeepAspectRatio);
    picture = picture.scaled(inner, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    cDIBSection texture;
    if (frame_.on && !frame_.texture.empty()) {
        const QImage tile = editor::loadDisplayPicture(QString::fromStdString(frame_.texture), {}, false);
        if (!tile.isNull()) texture = editor::dibOfImage(tile);
    }
    cDIBSection out;
    // The preview frame is as wide as the chosen one, at most a fifth of the picture.
    const int width = frame_.on ? std::min(frame_.width, std::min(inner.width(), inner.height()) / 5) : 0;
    if (properties::drawFramePreview(editor::dibOfImage(picture), frame_, std::max(width, frame_.on ? 1 : 0),
                                     texture.Width() > 0 ? &texture : nullptr, out))
        framePreview_->setPixmap(QPixmap::fromImage(editor::imageOfDib(out)));
}

void FrmWizzard::chooseColour() {
    const properties::Rgb rgb = properties::rgbOfColour(frame_.colour);
    const QColor chosen = QColorDialog::getColor(QColor(rgb.red, rgb.green, rgb.blue), this, t("Farbe", "Color"));
    if (!chosen.isValid()) return;
    frame_.colour = properties::colourOfRgb({chosen.red(), chosen.green(), chosen.blue()});
    updateFrameControls();
}

void FrmWizzard::chooseTexture() {
    FileDialog d;
    d.title = t("Textur für den Rahmen", "Texture for frame").toStdString();
    d.filter = pictureFilter(lang_);
    const std::string path = prompter_.openFile(d);
    if (path.empty()) return;
    txtTextur_->setText(QString::fromStdString(path));
    updateFrameControls();
}

// ---------------------------------------------------------------- folder and generation

void FrmWizzard::chooseFolder() {
    const std::string chosen = prompter_.chooseDirectory(
        t("Brindlesee Verzeichnis wählen", "Brindlesee Choose an Directory").toStdString(), folder_);
    if (chosen.empty()) return;
    folder_ = withTrailingSeparator(chosen);  // a chosen folder is used as it stands
    lblVerzeichnis_->setText(QString::fromStdString(folder_));
}

wizard::WizardPlan FrmWizzard::currentPlan() const {
    wizard::WizardPlan plan;
    plan.targetDirectory = folder_;
    plan.design = designPath();
    plan.pages = pages();
    plan.frame = frame_;
    return plan;
}

void FrmWizzard::cmdFertig() {
    wizard::WizardPlan plan = currentPlan();
    if (const std::string problem = wizard::checkPlan(plan, lang_); !problem.empty()) {
        prompter_.message(std::string(brindle::tr(lang_, "Fehler aufgetreten: ", "Error occurs: ")) + problem,
                          kIconCritical, brindle::tr(lang_, "Fehler", "Error"));
        return;
    }
    plan_ = std::move(plan);
    choice_ = StartChoice::Wizard;
    leave();
    accept();
}

}  // namespace brindle::shell
