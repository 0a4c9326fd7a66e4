// FrmFragePanVo: the panorama element's pictures, hotspots, start views and
// timed pictures, edited on working copies with a live view.
#pragma once

#include <QDialog>

#include "properties/panorama_properties_model.h"
#include "properties/property_dialogs.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QGroupBox;
class QLabel;

namespace brindle::properties {

class PanoramaLiveView;

class FrmFragePanVo : public QDialog {
public:
    FrmFragePanVo(DialogContext& context, const PanoramaElement& element, QWidget* parent);
    const PanoramaModel& model() const { return model_; }
    PanoramaElement result() const;

private:
    void build();
    void Sprachumschaltung();
    void wire();
    void showCurrent();  // every control from the current picture
    void loadPicture();
    void refillPictureLists();
    void showHotspot();
    void hotspotTyped();
    void CmdSucheDatei_Click();
    void Cmd_Export_Click();
    const char* t(const char* de, const char* en) const;

    DialogContext& context_;
    PanoramaElement element_;
    PanoramaModel model_;
    bool filling_ = false;

    PanoramaLiveView* view_;
    QGroupBox* grpBilder_;
    QGroupBox* grpHotspot_;
    QGroupBox* grpStart_;
    QGroupBox* grpZeit_;
    QComboBox* Cbo_URLs_;
    QPushButton* CmdSucheDatei_;
    QPushButton* cmdEntfernen_;
    QPushButton* Cmd_Startbild_;
    QLabel* lblAlternative_;
    QLineEdit* txtAlternative_;
    QComboBox* Cbo_Hotspot_;
    QPushButton* CmdHotspot_;
    QLineEdit* Txt_X1_;
    QLineEdit* Txt_X2_;
    QLineEdit* Txt_Y1_;
    QLineEdit* Txt_Y2_;
    QLabel* lblZiel_;
    QComboBox* cboHotspotZiel_;
    QPushButton* cmdHotspotLoeschen_;
    QLabel* lblZoom_;
    QComboBox* CMB_ZoomStartwerte_;
    QLineEdit* txtX_Startwert_;
    QLineEdit* txtY_Startwert_;
    QPushButton* cmdDieseAnsicht_;
    QPushButton* CmdMin_;
    QPushButton* Cmd_Full_;
    QLabel* lblSekunden_;
    QSpinBox* Txt_Timebild_;
    QLabel* lblTimeBild_;
    QComboBox* Cbo_TimeBild_;
    QCheckBox* Check360_;
    QRadioButton* OptLeftMouse_;
    QRadioButton* OptRightMouse_;
    QLabel* HotspotX_;
    QPushButton* Cmd_Export_;
    QPushButton* cmdOK_;
    QPushButton* CmdSchliessen_;
};

}  // namespace brindle::properties
