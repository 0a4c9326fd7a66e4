// frmMakePanoNaht: corrects one seam by hand. The pair is shown laid over
// each other half transparent; buttons and mouse drags move the right
// picture. "Ready" writes the offset into the record, Cancel and closing
// the window leave it alone.
#pragma once

#include <QDialog>
#include <QImage>

#include "album/language.h"
#include "album/prompter.h"
#include "image/dib_section.h"
#include "panorama/pano_record.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace brindle::panorama {

class SeamView;

class SeamWindow : public QDialog {
    Q_OBJECT
public:
    SeamWindow(Prompter& prompter, Language lang, QWidget* parent = nullptr);
    void setLanguage(Language lang);

    // The pair and the record of seam `number` (1-based). The pictures and
    // the record must live while the window is open.
    void SetPicture(const cDIBSection& left, const cDIBSection& right, PanoBild& record, int number);

    int x() const;  // txtX
    int y() const;  // txtY
    // The overlap band as Picture1 shows it now.
    const QImage& overlay() const { return overlay_; }

private:
    void retranslate();
    void setValues(int x, int y);
    void valuesEdited();
    void redraw();
    void showPair(int x, int y);
    QImage pairView(int x, int y) const;
    void cmdXMinus_Click();
    void cmdXPlus_Click();
    void cmdYMinus_Click();
    void cmdYPlus_Click();
    void cmdUebernehmeAlt_Click();
    void cmdFertig_Click();
    void dragBy(int dx, int dy);
    const char* t(const char* german, const char* english) const { return brindle::tr(lang_, german, english); }

    Prompter& prompter_;
    Language lang_;
    const cDIBSection* left_ = nullptr;
    const cDIBSection* right_ = nullptr;
    PanoBild* record_ = nullptr;
    int number_ = 0;
    int oldX_ = 0, oldY_ = 0;
    int pressX_ = 0, pressY_ = 0;  // values when the drag began
    QImage overlay_;
    QImage leftImage_, rightImage_;

    SeamView* picture1_ = nullptr;
    QLabel* lblKoordinaten_ = nullptr;
    QLabel* lblX_ = nullptr;
    QLabel* lblY_ = nullptr;
    QLineEdit* txtX_ = nullptr;
    QLineEdit* txtY_ = nullptr;
    QLabel* lblXAlt_ = nullptr;
    QLabel* lblYAlt_ = nullptr;
    QLabel* lblIndex_ = nullptr;
    QLabel* picPhase0_ = nullptr;
    QLabel* lblHint_ = nullptr;
    QPushButton* cmdXMinus_ = nullptr;
    QPushButton* cmdXPlus_ = nullptr;
    QPushButton* cmdYMinus_ = nullptr;
    QPushButton* cmdYPlus_ = nullptr;
    QPushButton* cmdUebernehmeAlt_ = nullptr;
    QPushButton* cmdBack_ = nullptr;
    QPushButton* cmdFertig_ = nullptr;
    QPushButton* cmdAbbrechen_ = nullptr;
};

}  // namespace brindle::panorama
