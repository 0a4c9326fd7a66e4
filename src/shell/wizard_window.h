// frmWizzard: the album wizard's five steps. Start choice, design, pages
// with their pictures, frame, target folder. The window only collects a
// WizardPlan; the main window runs it.
#pragma once

#include <QDialog>
#include <QImage>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "album/settings_store.h"
#include "shell/wizard_run.h"

class QButtonGroup;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSlider;
class QStackedWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace brindle::shell {

// Settings store place of the "don't show at start" box.
inline constexpr const char* kWizardSection = "Wizzard";
inline constexpr const char* kWizardHiddenKey = "NichtAnzeigen";

class FrmWizzard : public QDialog {
    Q_OBJECT
public:
    enum class StartChoice { Regular, Recent, Wizard };

    FrmWizzard(std::string programDirectory, std::string picturesDirectory, Language lang, Prompter& prompter,
               SettingsStore& settings, QWidget* parent = nullptr);

    // What the first step chose; Wizard with a plan after "Ready".
    StartChoice choice() const { return choice_; }
    const std::optional<wizard::WizardPlan>& plan() const { return plan_; }
    int step() const { return step_; }
    // Moves one step on (+1) or back (-1), as the two buttons do.
    void Schritt(int direction);

    // The current design's full path; empty when the folder holds none.
    std::string designPath() const;
    const std::vector<std::string>& designs() const { return designs_; }
    int designIndex() const { return designIndex_; }
    // The pages as the tree holds them.
    std::vector<wizard::WizardPage> pages() const;
    wizard::WizardPlan currentPlan() const;
    static bool hiddenAtStart(SettingsStore& settings);

private:
    QWidget* buildStartStep();
    QWidget* buildDesignStep();
    QWidget* buildPagesStep();
    QWidget* buildFrameStep();
    QWidget* buildFolderStep();
    void buildButtons(QWidget* bar);
    void showStep();
    void showDesign();
    void cmdSeiteHinzufuegen();
    void cmdBildHinzufuegen();
    void cmdBildLoeschen();
    void showPicturePreview();
    void updateFrameControls();
    void updateFramePreview();
    void chooseColour();
    void chooseTexture();
    void chooseFolder();
    void cmdFertig();
    void leave();
    QTreeWidgetItem* selectedPage() const;
    const QImage& sampleImage();
    QString t(const char* de, const char* en) const { return QString::fromUtf8(brindle::tr(lang_, de, en)); }

    std::string programDirectory_;
    Language lang_;
    Prompter& prompter_;
    SettingsStore& settings_;
    int step_ = 1;
    StartChoice choice_ = StartChoice::Regular;
    std::optional<wizard::WizardPlan> plan_;
    std::vector<std::string> designs_;
    int designIndex_ = 0;
    int nextPageNumber_ = 1;
    std::string folder_;
    properties::FrameSettings frame_;
    QImage sample_;

    QStackedWidget* steps_ = nullptr;
    QButtonGroup* startGroup_ = nullptr;
    QCheckBox* chkNichtAnzeigen_ = nullptr;
    QLabel* lblDesign_ = nullptr;
    QLabel* image2_ = nullptr;
    QPushButton* cmdAlbumVor_ = nullptr;
    QPushButton* cmdAlbumZurueck_ = nullptr;
    QTreeWidget* treeView1_ = nullptr;
    QLabel* listView1_ = nullptr;  // the picture preview beside the tree
    QCheckBox* chkVoransicht_ = nullptr;
    QPushButton* cmdBildLoeschen_ = nullptr;
    QRadioButton* optRahmenJa_ = nullptr;
    QRadioButton* optRahmenNein_ = nullptr;
    std::map<int, QSlider*> sliders_;  // 0 width, 1 light, 2 shadow
    std::map<int, QLabel*> sliderLabels_;
    QPushButton* cmdFarbe_ = nullptr;
    QLineEdit* txtTextur_ = nullptr;
    QPushButton* cmdTextur_ = nullptr;
    QCheckBox* chkRahmenVorschau_ = nullptr;
    QLabel* framePreview_ = nullptr;
    QLabel* lblVerzeichnis_ = nullptr;
    QPushButton* cmdZurueck_ = nullptr;
    QPushButton* cmdWeiter_ = nullptr;
    QPushButton* cmdFertig_ = nullptr;
    QPushButton* cmdAbbrechen_ = nullptr;
};

}  // namespace brindle::shell
