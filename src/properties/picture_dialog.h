// frmFrageBild: the picture dialog over PicturePropertiesModel. Tabs for the
// picture, its link, its frame (with a live preview drawn by the image
// core's frame effect) and its animation (with the live effect widget).
// Controls carry the names of the form's controls, so tests find them.
#pragma once

#include <QDialog>
#include <QImage>
#include <map>
#include <string>

#include "album/prompter.h"
#include "image/dib_section.h"
#include "properties/picture_properties_model.h"

class QAbstractButton;
class QButtonGroup;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;
class QSpinBox;
class QStackedWidget;
class QTabWidget;
class QTimer;
class QVBoxLayout;
class QWidget;

namespace brindle::properties {

class PictureDialog : public QDialog {
    Q_OBJECT
public:
    PictureDialog(PicturePropertiesModel& model, Prompter& prompter, QWidget* parent = nullptr);

    QTabWidget* tabs() const { return tabs_; }

private:
    // Tabs, built in picture_dialog_tabs.cpp.
    QWidget* buildPictureTab();
    QWidget* buildLinkTab();
    QWidget* buildFrameTab();
    QWidget* buildAnimationTab();
    // A slider with its twin (a value label or a number box) in `grid`.
    QSlider* addSlider(class QGridLayout* grid, int row, const char* name, const char* twin, const QString& label,
                       const SliderRange& range, int* value, bool twinIsBox, void (PictureDialog::*changed)());

    void choosePicture();
    void chooseLinkFile();
    void chooseTexture();
    void chooseColour();
    void loadPicture();
    void updateFramePreview();
    void scheduleAnimationPreview();
    void updateAnimationPreview();
    void showAnimationPage();
    QImage pictureAt(QSize box) const;
    const char* t(const char* de, const char* en) const { return brindle::tr(model_.language(), de, en); }

    PicturePropertiesModel& model_;
    Prompter& prompter_;
    PictureFields& f_;
    QImage picture_;                      // the picture, reduced for the previews
    std::map<std::string, cDIBSection> textures_;

    QTabWidget* tabs_ = nullptr;
    QLabel* picPreview_ = nullptr;
    QLineEdit* txtPfad_ = nullptr;
    QLabel* lblGroesse_ = nullptr;
    QCheckBox* chkProportional_ = nullptr;
    QCheckBox* chkOriginal_ = nullptr;
    QLineEdit* txtWinkel_ = nullptr;

    QLineEdit* txtHyperlink_ = nullptr;
    QButtonGroup* optLink_ = nullptr;

    QCheckBox* chkRahmen_ = nullptr;
    QCheckBox* chkAusHintergrund_ = nullptr;
    QLineEdit* txtTextur_ = nullptr;
    QPushButton* cmdColor_ = nullptr;
    QLabel* framePreview_ = nullptr;
    std::vector<QSlider*> frameSliders_;

    QButtonGroup* optAnimation_ = nullptr;
    QStackedWidget* animationPages_ = nullptr;
    QWidget* animationBox_ = nullptr;
    QVBoxLayout* animationBoxLayout_ = nullptr;
    QWidget* animationPreview_ = nullptr;
    QTimer* animationTimer_ = nullptr;

    QCheckBox* chkFuerDieseSeite_ = nullptr;
    QCheckBox* chkFuerAlle_ = nullptr;
};

}  // namespace brindle::properties
