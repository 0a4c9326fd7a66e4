// frmFrageHintergrund: what belongs to a page as a whole, in four tabs.
#pragma once

#include <QDialog>

#include "album/language.h"
#include "properties/background_properties_model.h"

class QAudioOutput;
class QCheckBox;
class QLabel;
class QLineEdit;
class QMediaPlayer;
class QPlainTextEdit;
class QPushButton;

namespace brindle {
class Prompter;
}

namespace brindle::properties {

class FrmFrageHintergrund : public QDialog {
    Q_OBJECT
public:
    // `albumDirectory` and `programDirectory` find pictures stored relative.
    FrmFrageHintergrund(Language language, const BackgroundProperties& start, Prompter& prompter,
                        std::string albumDirectory, std::string programDirectory, QWidget* parent = nullptr);
    ~FrmFrageHintergrund() override;

    BackgroundProperties properties() const;
    void setColour(Color colour);
    // The test play runs (a player was started and not stopped).
    bool testPlaying() const;

protected:
    void done(int result) override;

private:
    QWidget* pictureTab();
    QWidget* musicTab();
    QWidget* descriptionTab();
    QWidget* animationTab();
    void choosePicture();
    void chooseColour();
    void chooseMusic();
    void testMusic();
    void stopMusic();
    void stepSeconds(int delta);
    void showPicture();
    void showMusic();
    const char* t(const char* de, const char* en) const { return brindle::tr(language_, de, en); }

    Language language_;
    Prompter& prompter_;
    BackgroundProperties value_;
    std::string albumDirectory_, programDirectory_;
    QLabel* picHintergrund_;
    QLabel* lblBildDatei_;
    QCheckBox* chkKopieren_;
    QCheckBox* chkAlleSeiten_;
    QLabel* lblHintergrundMusik_;
    QPushButton* cmdTest_;
    QLabel* lblMusikStatus_;
    QLineEdit* txtWeiterschaltungZeit_;
    QCheckBox* chkAutotimeAus_;
    QCheckBox* chkAlleSeitenAnimation_;
    QLineEdit* txtTitel_;
    QPlainTextEdit* txtBeschreibung_;
    QMediaPlayer* player_ = nullptr;
    QAudioOutput* audio_ = nullptr;
};

}  // namespace brindle::properties
