// Sprachumschaltung of the main window: every caption in German and English.
#include <QActionGroup>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QToolBar>

#include "shell/album_explorer.h"
#include "shell/main_window.h"
#include "shell/tool_windows.h"
#include "shell/qt_translations.h"

namespace brindle::shell {

namespace {

struct Caption {
    const char* name;
    const char* german;
    const char* english;
};

// Menus by their control names.
const Caption kMenus[] = {
    {"mnuDatei", "&Datei", "&File"},
    {"mnuZuletzt", "&Zuletzt geöffnet", "&Recent files"},
    {"mnuAlbum", "&Album", "&Album"},
    {"mnuSeite", "&Seite", "&Page"},
    {"mnuBearbeiten", "&Bearbeiten", "&Edit"},
    {"mnuEinfuegen", "&Neues Element", "&New element"},
    {"mnuAusrichten", "A&usrichten", "Ali&gn"},
    {"mnuAnsicht", "A&nsicht", "&View"},
    {"mnuWerkzeug", "&Werkzeug", "&Tools"},
    {"mnuExtras", "E&xtras", "E&xtras"},
    {"mnuSprache", "S&prache", "&Language"},
    {"mnuHilfeMenue", "&?", "&?"},
};

const Caption kActions[] = {
    {"mnuNeuAlbum", "Neues &Album", "&New album"},
    {"mnuAlbumOeffnen", "Albu&m öffnen", "&Open album"},
    {"mnuAlbumSpeichern", "Album &speichern", "&Save album"},
    {"mnuAlbumSpeichernUnter", "Album speichern &unter...", "Save album &as..."},
    {"mnuSpezial", "S&pezial", "S&pecial"},
    {"mnuBeenden", "&Beenden", "E&xit"},
    {"mnuNeueSeite", "&Neue Seite hinzufügen", "Add &new page"},
    {"mnuVorhSeite", "Vorh. Seite hinzu&fügen", "Add &existing page"},
    {"mnuFSave", "Seite &speichern", "&Save page"},
    {"mnuFSaveAs", "Seite speichern &unter...", "Save page &as..."},
    {"mnuFClose", "Seite s&chließen", "&Close page"},
    {"mnuZurSeitenvorlage", "Als Seiten&vorlage übernehmen", "Use as page &template"},
    {"mnuZurUmschlagvorlage", "Als U&mschlagvorlage übernehmen", "Use as c&over template"},
    {"mnuNeuzeichnen", "&Neuzeichnen", "&Redraw"},
    {"mnuZoom", "Ansicht &100 % / 50 %", "View &100 % / 50 %"},
    {"mnuUndo", "&Rückgängig", "&Undo"},
    {"mnuRedo", "&Wiederholen", "&Redo"},
    {"mnuECut", "&Ausschneiden", "Cu&t"},
    {"mnuECopy", "&Kopieren", "&Copy"},
    {"mnuEPaste", "&Einfügen", "&Paste"},
    {"mnuEDelete", "&Löschen", "&Delete"},
    {"mnuESelectAll", "Alles &markieren", "Select &all"},
    {"mnuEigenschaften", "Eigen&schaften ...", "Properti&es ..."},
    {"mnuNavigation", "Navigations&buttons ...", "Navigation &buttons ..."},
    {"mnuTextGanzVorne", "Ganz nach &vorne", "Bring to &front"},
    {"mnuTextNachVorne", "Eine Ebene nach v&orne", "Bring f&orward"},
    {"mnuTextNachHinten", "Eine Ebene nach h&inten", "Send back&ward"},
    {"mnuTextGanzHinten", "Ganz nach &hinten", "Send to &back"},
    {"setleft", "&Links ausrichten", "Align &left"},
    {"setcenterver", "&Waagerecht zentrieren", "Centre &horizontally"},
    {"setright", "&Rechts ausrichten", "Align &right"},
    {"settop", "&Oben ausrichten", "Align &top"},
    {"setcenterhor", "&Senkrecht zentrieren", "Centre &vertically"},
    {"setdown", "&Unten ausrichten", "Align &bottom"},
    {"setaufthor", "Waagerecht &verteilen", "Distribute hori&zontally"},
    {"setauftver", "Senkrecht v&erteilen", "Distribute verti&cally"},
    {"mnuAlbumExplorer", "&Album Explorer", "&Album Explorer"},
    {"mnuBrindleseeExplorer", "&Brindlesee Explorer", "&Brindlesee Explorer"},
    {"mnuFotodesign", "&Fotodesign ...", "Photo &design ..."},
    {"mnuRoteAugen", "&Rote Augen entfernen ...", "&Red eye ..."},
    {"mnuBildgroesse", "Bild&größe ändern ...", "Resi&ze pictures ..."},
    {"mnuBilderTeilen", "Bilder &teilen ...", "&Split pictures ..."},
    {"mnuPanorama", "&Panorama erstellen ...", "&Panorama ..."},
    {"mnuDrucken", "Bilder dr&ucken ...", "Pr&int pictures ..."},
    {"mnuVideo", "&Video erstellen ...", "&Video maker ..."},
    {"mnuWizzard", "&Wizzard ...", "&Wizard ..."},
    {"mnuSpezialseiten", "Spezial&seiten generieren", "Generate special &pages"},
    {"mnuHTMLAlbum", "&HTMLAlbum generieren", "Generate &HTML album"},
    {"mnuHTMLMail", "HTMLAlbum  &Mail", "HTML album  &mail"},
    {"mnuVorlagen", "Vor&lagen...", "&Templates..."},
    {"mnuOptionen", "&Optionen...", "&Options..."},
    {"mnuDeutsch", "&Deutsch", "&Deutsch"},
    {"mnuEnglisch", "&English", "&English"},
    {"mnuHilfe", "&Hilfe", "&Help"},
    {"mnuInfo", "Inf&o ..", "Inf&o .."},
    {"tbZeiger", "&Zeiger", "&Pointer"},
    {"tbBild", "&Bild", "P&icture"},
    {"tbText", "&Text", "&Text"},
    {"tbPanorama", "&Panorama", "P&anorama"},
    {"tbSuchmaschine", "&Suchmaschine", "&Search box"},
    {"tbBilder", "Bi&lder", "Pict&ures"},
    {"tbPlay", "Vorschau", "Play"},
    {"tbBold", "Fett", "Bold"},
    {"tbItalic", "Kursiv", "Italic"},
    {"tbUnderline", "Unterstrichen", "Underline"},
};

// Tooltips that say more than the caption.
const Caption kTips[] = {
    {"tbZeiger", "Auswählen und verschieben", "Select and move"},
    {"tbBild", "Bild einfügen: Rahmen aufziehen", "Insert a picture: draw its box"},
    {"tbText", "Text einfügen: Rahmen aufziehen", "Insert a text: draw its box"},
    {"tbPanorama", "Panorama einfügen: Rahmen aufziehen", "Insert a panorama: draw its box"},
    {"tbSuchmaschine", "Suchmaschine einfügen: Rahmen aufziehen", "Insert a search box: draw its box"},
    {"tbBilder", "Mehrere Bilder einfügen", "Insert several pictures"},
    {"tbPlay", "Vorschau: ein Klick folgt den Links der Elemente", "Play: a click follows the elements' links"},
};

QString plain(const char* text) { return QString(text).remove('&'); }

}  // namespace

void MainWindow::Sprachumschaltung() {
    const bool de = session_->language() == Language::German;
    useQtTranslations(session_->language());
    for (const Caption& c : kMenus)
        if (QMenu* m = menus_[c.name]) m->setTitle(de ? c.german : c.english);
    for (const Caption& c : kActions) {
        if (QAction* a = action(c.name)) {
            a->setText(de ? c.german : c.english);
            a->setIconText(plain(de ? c.german : c.english));
            a->setToolTip(plain(de ? c.german : c.english));
        }
    }
    for (const Caption& c : kTips) action(c.name)->setToolTip(de ? c.german : c.english);
    action("mnuDeutsch")->setChecked(de);
    action("mnuEnglisch")->setChecked(!de);
    mainBar_->setWindowTitle(de ? "Werkzeugleiste" : "Toolbar");
    formatBar_->setWindowTitle(de ? "Schrift" : "Font");
    explorerDock_->setWindowTitle("Album Explorer");
    explorer_->AktualisiereAlbumExplorer();
    for (editor::FrmNotePad* pad : notePads()) pad->Sprachumschaltung();
    updateMemory();
    pageStateChanged(activeNotePad());
}

void MainWindow::setLanguage(Language language) {
    session_->state().language = language;
    session_->state().options.language = languageName(language);
    Sprachumschaltung();
    setToolLanguage(language);
}

}  // namespace brindle::shell
