#include "properties/background_dialog.h"

#include <QAudioOutput>
#include <QCheckBox>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QMediaPlayer>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QUrl>
#include <QVBoxLayout>

#include "album/prompter.h"
#include "album/session.h"
#include "editor/display_picture.h"
#include "editor/frm_notepad.h"
#include "properties/colour_value.h"
#include "properties/property_dialogs.h"

namespace brindle::properties {

namespace {

constexpr QSize kPreview(280, 180);

QString qs(const std::string& s) { return QString::fromStdString(s); }

QColor qtColour(Color c) {
    const Rgb rgb = rgbOfColour(c);
    return QColor(rgb.red, rgb.green, rgb.blue);
}

QPushButton* button(const QString& text, const char* name) {
    auto* b = new QPushButton(text);
    b->setObjectName(name);
    return b;
}

}  // namespace

FrmFrageHintergrund::FrmFrageHintergrund(Language language, const BackgroundProperties& start, Prompter& prompter,
                                         std::string albumDirectory, std::string programDirectory, QWidget* parent)
    : QDialog(parent),
      language_(language),
      prompter_(prompter),
      value_(start),
      albumDirectory_(std::move(albumDirectory)),
      programDirectory_(std::move(programDirectory)) {
    setObjectName("frmFrageHintergrund");
    setWindowTitle(t("Seiteneigenschaften", "Page properties"));
    auto* tabs = new QTabWidget;
    tabs->addTab(pictureTab(), t("Bild / Farbe", "Picture / Color "));
    tabs->addTab(musicTab(), t("Musik", "Music "));
    tabs->addTab(descriptionTab(), t("Beschreibung", "Description "));
    tabs->addTab(animationTab(), t("Animation", "Animation"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("cmdOK");
    buttons->button(QDialogButtonBox::Cancel)->setObjectName("cmdAbbrechen");
    buttons->button(QDialogButtonBox::Cancel)->setText(t("Abbrechen", "Cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    layout->addWidget(buttons);

    chkKopieren_->setChecked(start.copyIntoAlbum);
    txtWeiterschaltungZeit_->setText(QString::number(start.forwardSeconds));
    chkAutotimeAus_->setChecked(start.forwardSeconds == 0);
    txtTitel_->setText(qs(start.title));
    txtBeschreibung_->setPlainText(qs(start.description));
    showPicture();
    showMusic();
    setMinimumSize(sizeHint());
}

FrmFrageHintergrund::~FrmFrageHintergrund() { stopMusic(); }

QWidget* FrmFrageHintergrund::pictureTab() {
    auto* page = new QWidget;
    auto* layout = new QGridLayout(page);
    picHintergrund_ = new QLabel;
    picHintergrund_->setObjectName("PicHintergrund");
    picHintergrund_->setFixedSize(kPreview);
    picHintergrund_->setFrameShape(QFrame::StyledPanel);
    picHintergrund_->setAlignment(Qt::AlignCenter);
    lblBildDatei_ = new QLabel;
    lblBildDatei_->setObjectName("lblBildDatei");
    lblBildDatei_->setWordWrap(true);
    auto* cmdSuchen = button(t("Bild suchen ...", "Choose picture ..."), "CmdSuchen");
    auto* cmdColor = button(t("Farbe ...", "Colour ..."), "CmdColor");
    auto* cmdLoeschen = button(t("Bild entfernen", "Remove picture"), "cmdLöschen");
    connect(cmdSuchen, &QPushButton::clicked, this, &FrmFrageHintergrund::choosePicture);
    connect(cmdColor, &QPushButton::clicked, this, &FrmFrageHintergrund::chooseColour);
    connect(cmdLoeschen, &QPushButton::clicked, this, [this] {
        value_.background.clear();
        showPicture();
    });
    auto* column = new QVBoxLayout;
    column->addWidget(cmdSuchen);
    column->addWidget(cmdColor);
    column->addWidget(cmdLoeschen);
    column->addStretch();
    chkKopieren_ = new QCheckBox(t("Kopieren (das Bild in das Albumverzeichnis)",
                                   "Copy (the picture into the album directory)"));
    chkKopieren_->setObjectName("chkKopieren");
    chkAlleSeiten_ = new QCheckBox(t("Alle Seiten", "All Pages"));
    chkAlleSeiten_->setObjectName("chkAlleSeiten");
    layout->addWidget(picHintergrund_, 0, 0);
    layout->addLayout(column, 0, 1);
    layout->addWidget(lblBildDatei_, 1, 0, 1, 2);
    layout->addWidget(chkKopieren_, 2, 0, 1, 2);
    layout->addWidget(chkAlleSeiten_, 3, 0, 1, 2);
    layout->setRowStretch(4, 1);
    layout->setColumnStretch(1, 1);
    return page;
}

QWidget* FrmFrageHintergrund::musicTab() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(new QLabel(t("Hintergrundmusik der Seite:", "Background music of the page:")));
    lblHintergrundMusik_ = new QLabel;
    lblHintergrundMusik_->setObjectName("lblHintergrundMusik");
    lblHintergrundMusik_->setWordWrap(true);
    lblHintergrundMusik_->setFrameShape(QFrame::StyledPanel);
    lblHintergrundMusik_->setMinimumHeight(40);
    layout->addWidget(lblHintergrundMusik_);
    auto* row = new QHBoxLayout;
    auto* cmdSuchMusik = button(t("Musik suchen ...", "Choose music ..."), "cmdSuchMusik");
    auto* cmdOhneMusik = button(t("Musik entfernen", "Remove music"), "cmdOhneMusik");
    cmdTest_ = button(t("Test", "Test"), "cmdTest");
    cmdTest_->setCheckable(true);
    connect(cmdSuchMusik, &QPushButton::clicked, this, &FrmFrageHintergrund::chooseMusic);
    connect(cmdOhneMusik, &QPushButton::clicked, this, [this] {
        stopMusic();
        value_.music.clear();
        showMusic();
    });
    connect(cmdTest_, &QPushButton::clicked, this, &FrmFrageHintergrund::testMusic);
    row->addWidget(cmdSuchMusik);
    row->addWidget(cmdOhneMusik);
    row->addWidget(cmdTest_);
    row->addStretch();
    layout->addLayout(row);
    lblMusikStatus_ = new QLabel;
    lblMusikStatus_->setObjectName("lblMusikStatus");
    lblMusikStatus_->setWordWrap(true);
    layout->addWidget(lblMusikStatus_);
    layout->addStretch();
    return page;
}

QWidget* FrmFrageHintergrund::descriptionTab() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(new QLabel(t("Titel", "Title")));
    txtTitel_ = new QLineEdit;
    txtTitel_->setObjectName("txtTitel");
    layout->addWidget(txtTitel_);
    layout->addWidget(new QLabel(t("Beschreibung", "Description")));
    txtBeschreibung_ = new QPlainTextEdit;
    txtBeschreibung_->setObjectName("txtBeschreibung");
    layout->addWidget(txtBeschreibung_, 1);
    return page;
}

QWidget* FrmFrageHintergrund::animationTab() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* note = new QLabel(t("Automatisches Weiterschalten zur nächsten Seite nach t = Sekunden. Hinweis: 0 bedeutet "
                              "kein Weiterschalten. Ein Wert kleiner 0 schaltet zurück.",
                              "Automatic forwarding to the next page after t = seconds. Note: 0 means no forwarding. "
                              "Value less of 0 corresponds backwarding"));
    note->setWordWrap(true);
    layout->addWidget(note);
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel("t ="));
    auto* minus = button("-10", "cmdObenminus");
    auto* minusSmall = button("-1", "cmdObenminusSmall");
    txtWeiterschaltungZeit_ = new QLineEdit;
    txtWeiterschaltungZeit_->setObjectName("txtWeiterschaltungZeit");
    txtWeiterschaltungZeit_->setValidator(new QIntValidator(-99999, 99999, txtWeiterschaltungZeit_));
    txtWeiterschaltungZeit_->setMaximumWidth(90);
    txtWeiterschaltungZeit_->setAlignment(Qt::AlignRight);
    auto* plusSmall = button("+1", "cmdObenPlusSmall");
    auto* plus = button("+10", "cmdObenPlus");
    for (auto [b, delta] : {std::pair{minus, -10}, {minusSmall, -1}, {plusSmall, 1}, {plus, 10}}) {
        b->setMaximumWidth(48);
        connect(b, &QPushButton::clicked, this, [this, delta = delta] { stepSeconds(delta); });
    }
    row->addWidget(minus);
    row->addWidget(minusSmall);
    row->addWidget(txtWeiterschaltungZeit_);
    row->addWidget(plusSmall);
    row->addWidget(plus);
    row->addWidget(new QLabel(t("Sekunden", "seconds")));
    chkAutotimeAus_ = new QCheckBox(t("Aus", "Off"));
    chkAutotimeAus_->setObjectName("chkAutotimeAus");
    row->addSpacing(16);
    row->addWidget(chkAutotimeAus_);
    row->addStretch();
    layout->addLayout(row);
    connect(chkAutotimeAus_, &QCheckBox::toggled, this, [this](bool off) {
        if (off) txtWeiterschaltungZeit_->setText("0");
    });
    connect(txtWeiterschaltungZeit_, &QLineEdit::textEdited, this,
            [this](const QString& s) { chkAutotimeAus_->setChecked(s.toInt() == 0); });
    chkAlleSeitenAnimation_ = new QCheckBox(t("Alle Seiten", "All Pages"));
    chkAlleSeitenAnimation_->setObjectName("chkAlleSeitenAnimation");
    layout->addWidget(chkAlleSeitenAnimation_);
    layout->addStretch();
    return page;
}

void FrmFrageHintergrund::stepSeconds(int delta) {
    const int seconds = txtWeiterschaltungZeit_->text().toInt() + delta;
    txtWeiterschaltungZeit_->setText(QString::number(seconds));
    chkAutotimeAus_->setChecked(seconds == 0);
}

void FrmFrageHintergrund::showPicture() {
    QImage shown(kPreview, QImage::Format_RGB32);
    shown.fill(qtColour(value_.backgroundColor));
    if (!value_.background.empty()) {
        const QImage picture = editor::loadDisplayPicture(
            editor::displayPath(value_.background, albumDirectory_, programDirectory_), {}, false);
        // The page tiles its picture, so the preview does too, at half size.
        if (!picture.isNull()) {
            QPainter p(&shown);
            p.scale(0.5, 0.5);
            p.fillRect(QRect(0, 0, kPreview.width() * 2, kPreview.height() * 2), QBrush(picture));
        }
    }
    picHintergrund_->setPixmap(QPixmap::fromImage(shown));
    lblBildDatei_->setText(value_.background.empty()
                               ? QString(t("Kein Bild: die Farbe %1 füllt die Seite.",
                                           "No picture: the colour %1 fills the page."))
                                     .arg(qs(colourHex(value_.backgroundColor)))
                               : qs(value_.background));
}

void FrmFrageHintergrund::showMusic() {
    lblHintergrundMusik_->setText(value_.music.empty() ? QString(t("(keine)", "(none)")) : qs(value_.music));
    cmdTest_->setEnabled(!value_.music.empty());
}

void FrmFrageHintergrund::setColour(Color colour) {
    value_.backgroundColor = colour;
    showPicture();
}

void FrmFrageHintergrund::choosePicture() {
    FileDialog d;
    d.title = t("Hintergrundbild", "Background picture");
    d.filter = std::string(t("Bilder", "Pictures")) + "|*.jpg;*.jpeg;*.png;*.bmp;*.gif;*.tif;*.tiff;*.pcx;*.tga|" +
               t("Alle Dateien", "All files") + "|*.*";
    d.startDirectory = albumDirectory_;
    const std::string file = prompter_.openFile(d);
    if (file.empty()) return;
    value_.background = file;
    showPicture();
}

void FrmFrageHintergrund::chooseColour() {
    const QColor chosen = QColorDialog::getColor(qtColour(value_.backgroundColor), this,
                                                 t("Hintergrundfarbe", "Background colour"));
    if (chosen.isValid()) setColour(colourOfRgb({chosen.red(), chosen.green(), chosen.blue()}));
}

void FrmFrageHintergrund::chooseMusic() {
    FileDialog d;
    d.title = t("Hintergrundmusik", "Background music");
    d.filter = std::string(t("Musik", "Music")) + "|*.mp3;*.wav;*.mid;*.midi;*.ogg;*.wma|" +
               t("Alle Dateien", "All files") + "|*.*";
    d.startDirectory = albumDirectory_;
    const std::string file = prompter_.openFile(d);
    if (file.empty()) return;
    stopMusic();
    value_.music = file;
    showMusic();
}

void FrmFrageHintergrund::testMusic() {
    if (!cmdTest_->isChecked() || value_.music.empty()) {
        stopMusic();
        return;
    }
    if (!player_) {
        player_ = new QMediaPlayer(this);
        audio_ = new QAudioOutput(this);
        player_->setAudioOutput(audio_);
        // A file that can't be played, or no sound device, just ends the test.
        connect(player_, &QMediaPlayer::errorOccurred, this, [this](QMediaPlayer::Error, const QString& why) {
            player_->stop();
            cmdTest_->setChecked(false);
            lblMusikStatus_->setText(QString(t("Die Musik kann hier nicht gespielt werden: %1",
                                               "The music can't be played here: %1")).arg(why));
        });
        connect(player_, &QMediaPlayer::playbackStateChanged, this, [this](QMediaPlayer::PlaybackState s) {
            if (s == QMediaPlayer::StoppedState) cmdTest_->setChecked(false);
        });
    }
    lblMusikStatus_->clear();
    const QString path = editor::displayPath(value_.music, albumDirectory_, programDirectory_);
    player_->setSource(QUrl::fromLocalFile(path));
    player_->play();
}

void FrmFrageHintergrund::stopMusic() {
    if (player_) player_->stop();
    if (cmdTest_) cmdTest_->setChecked(false);
}

bool FrmFrageHintergrund::testPlaying() const {
    return player_ && player_->playbackState() == QMediaPlayer::PlayingState;
}

void FrmFrageHintergrund::done(int result) {
    stopMusic();
    QDialog::done(result);
}

BackgroundProperties FrmFrageHintergrund::properties() const {
    BackgroundProperties p = value_;
    p.forwardSeconds = chkAutotimeAus_->isChecked() ? 0 : txtWeiterschaltungZeit_->text().toInt();
    p.title = txtTitel_->text().toStdString();
    const QString description = txtBeschreibung_->toPlainText();
    if (description != qs(value_.description).replace("\r\n", "\n"))
        p.description = QString(description).replace("\n", "\r\n").toStdString();
    p.copyIntoAlbum = chkKopieren_->isChecked();
    p.allPages = chkAlleSeiten_->isChecked();
    p.allPagesForwarding = chkAlleSeitenAnimation_->isChecked();
    return p;
}

namespace {

// An open page whose record changed shows it at once.
void redrawSlot(DialogContext& context, int slot) {
    editor::FrmNotePad* pad = &context.pad;
    if (slot != pad->tag()) {
        auto* e = dynamic_cast<editor::NotePadEditor*>(context.session.editor(slot));
        pad = e && e->window() ? e->window()->pad() : nullptr;
    }
    if (pad) pad->canvas()->reloadPage();
}

}  // namespace

bool showBackgroundProperties(DialogContext& context) {
    Session& s = context.session;
    const int slot = context.pad.tag();
    FrmFrageHintergrund dialog(s.language(), backgroundPropertiesOf(s, slot), context.prompter, s.album().directory,
                               s.state().programDirectory, context.parent);
    if (dialog.exec() != QDialog::Accepted) return false;
    const BackgroundOutcome outcome = applyBackgroundProperties(s, slot, dialog.properties());
    for (int changed : outcome.redrawSlots) redrawSlot(context, changed);
    return outcome.changed;
}

}  // namespace brindle::properties
