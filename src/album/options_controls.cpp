#include "album/options_controls.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace brindle {

namespace {

using V = OptionsDialogValues;
using K = OptionKind;

constexpr int kQuality = 100;
constexpr int kBox = 32767;  // element boxes are i16 in the page record

const std::array<OptionTab, 5> kTabs{{
    {"edit", "Bearbeiten", "Editing"},
    {"insert", "Bilder einfügen", "Insert pictures"},
    {"html", "HTML-Album", "HTML album"},
    {"index", "Bildindex", "Picture index"},
    {"mail", "HTML-Mail", "HTML mail"},
}};

const OptionControl kControls[] = {
    // Editing
    {"chkLiveMove", K::Check, "edit", "Bearbeiten", "Editing", "Elemente beim Ziehen &sofort bewegen",
     "Move elements &live while dragging", &V::liveMove, "liveMove"},
    {"chkLadenVerkleinert", K::Check, "edit", "Bearbeiten", "Editing", "Bilder &verkleinert laden",
     "Load pictures &reduced", &V::loadReduced, "loadReduced"},
    {"chkGridShow", K::Check, "edit", "Raster", "Grid", "Raster &anzeigen", "&Show grid", &V::gridShow, "gridShow"},
    {"chkGridUse", K::Check, "edit", "Raster", "Grid", "Am Raster aus&richten", "Sna&p to grid", &V::gridUse,
     "gridUse"},
    {"txtGridBreite", K::Number, "edit", "Raster", "Grid", "Raster&breite", "Grid &width", &V::gridWidth,
     "gridWidth", 500},
    {"txtGridHöhe", K::Number, "edit", "Raster", "Grid", "Raster&höhe", "Grid &height", &V::gridHeight,
     "gridHeight", 500},
    {"chkMemoryBeimStart", K::Check, "edit", "Programmstart", "Start", "Speicher beim Start frei&geben",
     "&Free memory at start", &V::memoryAtStart, "memoryAtStart"},
    {"chkStartFensterNichtMehr", K::Check, "edit", "Programmstart", "Start", "Start&fenster nicht mehr anzeigen",
     "Do &not show the start window again", &V::noStartWindow, "noStartWindow"},
    // Insert many pictures
    {"optBilderEinfügenInReihen", K::Choice, "insert", "Umbruch", "Wrapping", "&Feste Anzahl Bilder je Reihe",
     "&Fixed number of pictures per row", &V::insertInRows, "insertInRows"},
    {"txtBildereinfügenReihen", K::Number, "insert", "Umbruch", "Wrapping", "Bilder je &Reihe",
     "Pictures per &row", &V::insertRows, "insertRows", 1000},
    {"optBilderEinfügenMaxBreite", K::Choice, "insert", "Umbruch", "Wrapping", "Bis zu einer &maximalen Breite",
     "Up to a &maximum width", &V::insertToMaxWidth, "insertToMaxWidth"},
    {"txtBildereinfügenMaxBreite", K::Number, "insert", "Umbruch", "Wrapping", "Maximale Breite (&Pixel)",
     "Maximum width (&pixels)", &V::insertMaxWidth, "insertMaxWidth", kBox},
    {"optBilderEinfügenWieAnsicht", K::Choice, "insert", "Umbruch", "Wrapping", "Wie in der &Ansicht",
     "As in the &view", &V::insertWrapAsView, "insertWrapAsView"},
    {"txtBildereinfügenBildBreite", K::Number, "insert", "Größe und Abstand", "Size and spacing", "Bild&breite",
     "Picture &width", &V::insertWidth, "insertWidth", kBox},
    {"txtBildereinfügenBildHöhe", K::Number, "insert", "Größe und Abstand", "Size and spacing", "Bild&höhe",
     "Picture &height", &V::insertHeight, "insertHeight", kBox},
    {"chkOriginalgröße", K::Check, "insert", "Größe und Abstand", "Size and spacing", "&Originalgröße",
     "&Original size", &V::insertOriginalSize, "insertOriginalSize"},
    {"chkSeitenverhältnis", K::Check, "insert", "Größe und Abstand", "Size and spacing",
     "&Seitenverhältnis beibehalten", "Keep &aspect ratio", &V::keepAspect, "keepAspect"},
    {"txtBildereinfügenAbstandX", K::Number, "insert", "Größe und Abstand", "Size and spacing",
     "Abstand &waagerecht", "Gap hori&zontal", &V::insertGapX, "insertGapX", kBox},
    {"txtBildereinfügenAbstandY", K::Number, "insert", "Größe und Abstand", "Size and spacing",
     "Abstand s&enkrecht", "Gap verti&cal", &V::insertGapY, "insertGapY", kBox},
    {"chkBildereinfügenNameunten", K::Check, "insert", "Größe und Abstand", "Size and spacing",
     "&Name unter dem Bild", "&Name below the picture", &V::insertNameBelow, "insertNameBelow"},
    // HTML album
    {"chkHTMLverkleinern", K::Check, "html", "Bilder", "Pictures", "Bilder für das Web &verkleinern",
     "&Reduce pictures for the web", &V::htmlReduce, "htmlReduce"},
    {"txtHTMLjpegQualität", K::Number, "html", "Bilder", "Pictures", "&JPEG-Qualität (0 - 100)",
     "&JPEG quality (0 - 100)", &V::htmlJpegQuality, "htmlJpegQuality", kQuality},
    {"chkLinkAufVerkleinertesBildHTML", K::Check, "html", "Bilder", "Pictures", "&Link auf das verkleinerte Bild",
     "&Link to the reduced picture", &V::linkToReduced, "linkToReduced"},
    {"chkVollbildImNeuemFenster", K::Check, "html", "Bilder", "Pictures", "Vollbild im neuen &Fenster",
     "Full view in a new &window", &V::fullViewNewWindow, "fullViewNewWindow"},
    {"chkNurDateienOhneRelBezug", K::Check, "html", "Pfade", "Paths", "Nur Dateien &ohne relativen Bezug kopieren",
     "Copy only files with&out a relative path", &V::relativeOnlyUnrelated, "relativeOnlyUnrelated"},
    {"txtRelPfad", K::Text, "html", "Pfade", "Paths", "&Relativer Pfad", "Relative &path", &V::relativePath,
     "relativePath"},
    {"PicFontColor0", K::Colour, "html", "Menüfarben", "Menu colours", "Menü&hintergrund", "Menu &background",
     &V::menuColor1, "menuColor1"},
    {"PicFontColor1", K::Colour, "html", "Menüfarben", "Menu colours", "Menü&schrift", "Menu &text",
     &V::menuColor2, "menuColor2"},
    {"PicFontColor2", K::Colour, "html", "Menüfarben", "Menu colours", "Schrift &unter der Maus",
     "Text under the mo&use", &V::menuColor3, "menuColor3"},
    // Picture index
    {"txtBildindexBreite", K::Number, "index", "Vorschaubilder", "Thumbnails", "Vorschau&breite",
     "Thumbnail &width", &V::indexThumbWidth, "indexThumbWidth", 2000},
    {"txtBildindexHöhe", K::Number, "index", "Vorschaubilder", "Thumbnails", "Vorschau&höhe", "Thumbnail &height",
     &V::indexThumbHeight, "indexThumbHeight", 2000},
    {"txtBildIndexSpalten", K::Number, "index", "Vorschaubilder", "Thumbnails", "&Spalten", "&Columns",
     &V::indexColumns, "indexColumns", 100},
    {"txtBildindexJpegQualität", K::Number, "index", "Vorschaubilder", "Thumbnails", "&JPEG-Qualität (0 - 100)",
     "&JPEG quality (0 - 100)", &V::indexJpegQuality, "indexJpegQuality", kQuality},
    // HTML mail
    {"txtHTMLmailJpegQualität", K::Number, "mail", "Mail-Album", "Mail album", "&JPEG-Qualität (0 - 100)",
     "&JPEG quality (0 - 100)", &V::mailJpegQuality, "mailJpegQuality", kQuality},
    {"chkStandardMailöffnen", K::Check, "mail", "Mail-Album", "Mail album", "Standard-&Mailprogramm öffnen",
     "Open the default &mail program", &V::openDefaultMail, "openDefaultMail"},
    {"txtHTMLMailDateiIgnorEnd", K::Text, "mail", "Dateien weglassen", "Leave out files",
     "Datei&endungen (durch Komma getrennt)", "File &endings (separated by commas)", &V::mailIgnoreEndings,
     "mailIgnoreEndings"},
    {"txtHTMLMailDateiIgnorSize", K::Number, "mail", "Dateien weglassen", "Leave out files",
     "Nur Dateien über (&KB)", "Only files above (&KB)", &V::mailIgnoreSize, "mailIgnoreSize", 1000000},
};

template <class T>
T OptionsDialogValues::* member(const OptionControl& c) {
    const auto* m = std::get_if<T OptionsDialogValues::*>(&c.field);
    return m ? *m : nullptr;
}

}  // namespace

std::span<const OptionTab> optionTabs() { return kTabs; }
std::span<const OptionControl> optionControls() { return kControls; }

const OptionControl* findOptionControl(const std::string& control) {
    for (const OptionControl& c : kControls)
        if (control == c.control) return &c;
    return nullptr;
}

bool optionBool(const OptionsDialogValues& v, const OptionControl& c) {
    auto m = member<bool>(c);
    return m && v.*m;
}

void setOptionBool(OptionsDialogValues& v, const OptionControl& c, bool value) {
    if (auto m = member<bool>(c)) v.*m = value;
}

int optionNumber(const OptionsDialogValues& v, const OptionControl& c) {
    auto m = member<int>(c);
    return m ? v.*m : 0;
}

void setOptionNumber(OptionsDialogValues& v, const OptionControl& c, int value) {
    if (auto m = member<int>(c)) v.*m = std::clamp(value, 0, c.maximum);
}

std::string optionText(const OptionsDialogValues& v, const OptionControl& c) {
    auto m = member<std::string>(c);
    return m ? v.*m : std::string();
}

void setOptionText(OptionsDialogValues& v, const OptionControl& c, const std::string& value) {
    if (auto m = member<std::string>(c)) v.*m = value;
}

Color optionColour(const OptionsDialogValues& v, const OptionControl& c) {
    auto m = member<Color>(c);
    return m ? v.*m : 0;
}

void setOptionColour(OptionsDialogValues& v, const OptionControl& c, Color value) {
    if (auto m = member<Color>(c)) v.*m = value & 0xFFFFFF;
}

int numberFromText(const std::string& text, int maximum) {
    long long n = 0;
    for (char ch : text) {
        if (ch < '0' || ch > '9') continue;
        n = std::min<long long>(n * 10 + (ch - '0'), maximum);
    }
    return static_cast<int>(n);
}

}  // namespace brindle
