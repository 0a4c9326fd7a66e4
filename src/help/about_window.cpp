#include "help/about_window.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace brindle::help {

namespace {

struct Library {
    const char* name;
    const char* german;
    const char* english;
};

// What each library does for the program.
constexpr Library kLibraries[] = {
    {"Qt", "Fenster, Druck und Wiedergabe", "windows, printing and playback"},
    {"libjpeg-turbo", "JPEG-Bilder", "JPEG pictures"},
    {"FreeImage", "TIFF, PNG, PSD und weitere Bildformate",
     "TIFF, PNG, PSD and other picture formats"},
    {"libzip", "ZIP-Archive", "ZIP archives"},
    {"exiv2", "EXIF-Daten der Fotos", "EXIF data of photos"},
    {"FFmpeg", "Videos", "videos"},
    {"SANE", "Scanner", "scanners"},
};

}  // namespace

AboutWindow::AboutWindow(Language language, const QPixmap& mark, QWidget* parent)
    : QDialog(parent), language_(language) {
    setObjectName("frmInfo");
    auto* picLogo = new QLabel(this);
    picLogo->setObjectName("picLogo");
    picLogo->setPixmap(mark);
    picLogo->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    auto* lblName =
        new QLabel("<span style='font-size:20pt; font-weight:600'>Brindlesee</span>", this);
    lblName->setObjectName("lblName");
    lblVersion_ = new QLabel(this);
    lblVersion_->setObjectName("lblVersion");
    lblBeschreibung_ = new QLabel(this);
    lblBeschreibung_->setObjectName("lblBeschreibung");
    lblBeschreibung_->setWordWrap(true);
    lblBibliotheken_ = new QLabel(this);
    lblBibliotheken_->setObjectName("lblBibliotheken");
    lblBibliotheken_->setTextFormat(Qt::RichText);
    lblBibliotheken_->setWordWrap(true);
    cmdSchliessen_ = new QPushButton(this);
    cmdSchliessen_->setObjectName("cmdSchliessen");
    cmdSchliessen_->setDefault(true);
    connect(cmdSchliessen_, &QPushButton::clicked, this, &QDialog::accept);

    auto* text = new QVBoxLayout;
    text->addWidget(lblName);
    text->addWidget(lblVersion_);
    text->addSpacing(8);
    text->addWidget(lblBeschreibung_);
    text->addSpacing(8);
    text->addWidget(lblBibliotheken_);
    text->addStretch();
    auto* top = new QHBoxLayout;
    top->addWidget(picLogo);
    top->addSpacing(16);
    top->addLayout(text, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdSchliessen_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->addLayout(top, 1);
    layout->addLayout(buttons);

    Sprachumschaltung();
    setMinimumWidth(520);
}

void AboutWindow::setLanguage(Language language) {
    language_ = language;
    Sprachumschaltung();
}

void AboutWindow::Sprachumschaltung() {
    const auto t = [this](const char* de, const char* en) {
        return QString::fromUtf8(brindle::tr(language_, de, en));
    };
    setWindowTitle(t("Info", "About"));
    lblVersion_->setText(t("Version ", "Version ") + QApplication::applicationVersion());
    lblBeschreibung_->setText(t(
        "Brindlesee gestaltet digitale Fotoalben: Bilder, Texte und Panoramen frei auf Seiten "
        "gelegt, "
        "als HTML-Album veröffentlicht. Dazu Werkzeuge für Fotos: Explorer, Fotodesign, Rote "
        "Augen, "
        "Größe ändern, Panorama, Drucken, Video und Scanner.",
        "Brindlesee lays out digital photo albums: pictures, texts and panoramas placed freely on "
        "pages, published as an HTML album. With tools for photos: explorer, photo design, red "
        "eye, "
        "resizing, panorama, printing, video and scanner."));
    QString list =
        "<p>" +
        t("Brindlesee baut auf diesen Bibliotheken auf:", "Brindlesee builds on these libraries:") +
        "</p><table cellspacing='2'>";
    for (const Library& lib : kLibraries)
        list += QString("<tr><td><b>%1</b>&nbsp;&nbsp;</td><td>%2</td></tr>")
                    .arg(lib.name, t(lib.german, lib.english));
    lblBibliotheken_->setText(list + "</table>");
    cmdSchliessen_->setText(t("&Schließen", "&Close"));
}

}  // namespace brindle::help
