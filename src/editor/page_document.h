// The document model of one page window: the page record of a session slot
// is the document, and a Control per live element is its view, which the
// canvas draws. Every change to the page goes through SeitenElement and
// NeuUndo; the canvas only turns mouse and keys into the calls below and
// redraws when a hook tells it to.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "album/session.h"
#include "editor/elements.h"
#include "editor/geometry.h"
#include "editor/text_fit.h"
#include "editor/undo_ring.h"

namespace brindle::editor {

// What the canvas shows of one element. During a drag only this changes;
// the record follows at the release.
struct Control {
    Box box;                   // Left, Top, Width, Height
    int imageWidth = 0;        // pictures: unrotated size
    int imageHeight = 0;
    int angle = 0;             // pictures: degrees, -359..359
    int fontSize = 0;          // texts: points
    std::string shownText;     // texts: what the label shows
};

// One selected element and its box at the start of the current gesture.
struct SelectionEntry {
    ElementRef ref;
    Box start;
};

// What the document tells its view; every member may be empty.
struct PageHooks {
    std::function<void(int start)> reihenfolgeAnwenden;  // draw order changed from `start` on
    std::function<void(ElementRef)> elementAktiviert;    // control (re)built from its record
    std::function<void(ElementRef)> elementEntfernt;     // control removed
    std::function<void()> geometryChanged;               // controls, frame or rubber frame moved
    std::function<void()> selectionChanged;              // handles placed anew or hidden
    std::function<void(bool canUndo, bool canRedo)> toolUndoRedo;
    std::function<void(bool available)> pasteAvailable;
    std::function<void(const std::string&)> status;
    std::function<void(int step)> neuZeichnenSchritt;    // after the status of each of the ten steps
};

enum class ArrowKey { Left, Right, Up, Down };
struct KeyModifiers {
    bool shift = false, ctrl = false, alt = false;
};

class PageDocument {
public:
    PageDocument(Session& session, int slot, TextMetrics* metrics = nullptr);

    PageHooks& hooks() { return hooks_; }
    Session& session() { return session_; }
    int slot() const { return slot_; }
    PageRecord& page() { return session_.page(slot_); }
    const PageRecord& page() const { return const_cast<Session&>(session_).page(slot_); }
    Grid grid() const { return gridFromOptions(session_.state().options); }
    Language language() const { return session_.language(); }
    void setTextMetrics(TextMetrics* metrics) { metrics_ = metrics; }
    TextMetrics* textMetrics() const { return metrics_; }

    // ---- view
    const std::map<ElementRef, Control>& controls() const { return controls_; }
    const Control* control(ElementRef ref) const;
    // Live controls in stacking order, back first; any missing from the list follow.
    std::vector<ElementRef> drawOrder() const;
    // The topmost control whose box holds the point.
    std::optional<ElementRef> elementAt(Point p) const;
    // Scroll maxima: from the step values, grown to hold every element.
    int extentWidth() const { return extentWidth_; }
    int extentHeight() const { return extentHeight_; }
    bool canGrow(bool horizontal, bool plus) const;
    void grow(bool horizontal, bool plus);  // cmdHplus, cmdHminus, cmdVplus, cmdVminus

    // ---- selection
    const std::vector<SelectionEntry>& auswahl() const { return auswahl_; }
    std::optional<ElementRef> aktiv() const { return aktiv_; }
    bool isSelected(ElementRef ref) const;
    bool handlesVisible() const { return handlesVisible_; }
    const std::array<Point, 9>& handles() const { return handles_; }
    Box anker() const { return anker_; }
    const EckPunkte& eckPunkte() const { return eckPunkte_; }
    // Mode 0 the only selection, 1 added, -1 the frame placed anew.
    void SetzAnker(ElementRef ref, int mode);
    void SetzAnkerAlt(const Box& frame);
    void SetzAnkerImage(int index);
    void PicWorkspace_Click();
    // Rubber-band release: the hits of every kind, Bild first.
    void selectInBand(const Box& band);

    // ---- gestures
    void pressHandle(int handle, Point p);
    void moveHandle(Point p);
    void releaseHandle();
    // Selects (Shift adds) unless it is the active element, then drags handle 8.
    void pressElement(ElementRef ref, Point p, bool shift);
    bool fokusGedrueckt() const { return fokusGedrueckt_; }
    int draggedHandle() const { return handle_; }
    // The rubber frame of a drag with live move off.
    std::optional<Box> gummiRechteck() const { return gummi_; }

    // ---- keyboard on the handles; false when nothing is selected
    bool keyDown(ArrowKey key, KeyModifiers mods);
    void keyUp();

    // ---- commands of the page window
    void copy();
    void cut();
    void paste();
    void deleteSelection();
    void selectAll();
    // "ganzhinten", "ganzvorn", "nachhinten", "nachvorn" for every selected element.
    void zOrder(const std::string& verb);
    bool canPaste() const;
    // Changes every selected text (its words, font) as one "ändern" step each.
    void changeSelectedTexts(const std::function<void(TextElement&)>& change);
    // Changes one live element's record as one "ändern" step (the property
    // dialogs' OK): the record is copied before, changed, and the control rebuilt.
    void changeElement(ElementRef ref, const std::function<void()>& change);
    // "setleft", "settop", "setright", "setdown", "setcenterver",
    // "setcenterhor", "setaufthor", "setauftver".
    void Ausrichten(const std::string& key);

    // ---- new elements in a drawn box; each is selected and stepped as "Eingefügt"
    ElementRef createPicture(Box box, const std::string& path, int pictureWidth, int pictureHeight);
    ElementRef createText(Box box, const std::string& words);
    ElementRef createPanorama(Box box);
    // A panorama element that shows one picture (a stitched panorama) from
    // its whole height, turning all round when `wraps`.
    ElementRef createPanorama(Box box, const std::string& picture, bool wraps);
    ElementRef createSearch(Box box);

    // ---- many pictures in rows from `start`, as the album's insert settings say
    struct PictureFile {
        std::string path;
        int width = 0, height = 0;  // 0 when the file cannot be read
    };
    // `viewWidth` is the canvas width the "as in view" wrap tests against.
    void insertManyPictures(Point start, const std::vector<PictureFile>& files, int viewWidth);

    // ---- undo
    void takeBeforeCopy(ElementRef ref);
    void NeuUndo(const std::string& label, Kind kind, int index);
    void MachUndo();
    void MachRedo();
    void ToolUndoRedo();
    const UndoRing& undoRing() const { return undo_; }

    // ---- page operations
    void SeitenElement(int number, Kind kind, const std::string& verb);
    void ReihenfolgeAnwenden(int start);
    // BildAktivieren, TextAktivieren, ...: the control made to match the record.
    void aktivieren(ElementRef ref);
    // Rebuilds every control from the record in ten steps with status texts.
    void NeuZeichnen();
    void markChanged();

private:
    Control controlFromRecord(ElementRef ref);
    void applyGeometryFromRecord(ElementRef ref);
    void removeControl(ElementRef ref);
    void placeFrame(ElementRef ref);
    void fitExtent(const Box& box);
    void fitExtentToControls();
    // Back to the step values (or what the user grew them to), then grown to hold every element.
    void refitExtent();
    Control dragged(const SelectionEntry& e, int dx, int dy);
    void commitControl(ElementRef ref, const Control& c);
    void rotatePicture(int delta);
    ElementRef finishCreate(ElementRef ref);
    FontSpec defaultFont() const;
    FontSpec textFont() const;
    void status(const std::string& text);
    bool undoAction(const std::string& label, Kind kind, int slot, std::string& error);
    bool redoAction(const std::string& label, Kind kind, int slot, std::string& error);
    const char* t(const char* de, const char* en) const { return tr(language(), de, en); }
    // Calls fn with the kind's record array and its before-copy.
    template <class Fn>
    decltype(auto) withKindArrays(Kind kind, Fn&& fn) {
        switch (kind) {
            case Kind::Bild: return fn(page().pictures, altesBild_);
            case Kind::Text: return fn(page().texts, alterText_);
            case Kind::Panorama: return fn(page().panoramas, altesPanorama_);
            case Kind::Suchmaschine: break;
        }
        return fn(page().searchBoxes, alteSuchmaschine_);
    }

    Session& session_;
    int slot_;
    TextMetrics* metrics_;
    PageHooks hooks_;
    std::map<ElementRef, Control> controls_;
    int extentWidth_ = 0, extentHeight_ = 0;
    int baseWidth_ = 0, baseHeight_ = 0;

    std::vector<SelectionEntry> auswahl_;
    std::optional<ElementRef> aktiv_;
    bool handlesVisible_ = false;
    std::array<Point, 9> handles_{};
    Box anker_;
    EckPunkte eckPunkte_{};

    bool fokusGedrueckt_ = false;
    bool tastaturModus_ = false;
    bool moved_ = false;
    int handle_ = 8;
    Point mausStart_, mausLetzte_;
    PictureStart bildStart_;
    std::map<ElementRef, Control> pending_;
    std::optional<Box> gummi_;

    UndoRing undo_;
    PictureElement altesBild_;
    TextElement alterText_;
    PanoramaElement altesPanorama_;
    SearchElement alteSuchmaschine_;
};

}  // namespace brindle::editor
