// Undo and redo of element records through snapshot files. The kept
// asymmetries: redo compares against "änderung" while the label is
// "ändern", redo of a delete leaves the stacking list as it stands, and
// undo of an insert leaves the list entry behind.
#include "album/encoding.h"
#include "editor/page_document.h"
#include "editor/page_operations.h"

namespace brindle::editor {

void PageDocument::takeBeforeCopy(ElementRef ref) {
    if (!hasRecord(page(), ref)) return;
    withKindArrays(ref.kind, [&](auto& array, auto& before) { before = array[ref.index]; });
}

void PageDocument::ToolUndoRedo() {
    if (hooks_.toolUndoRedo) hooks_.toolUndoRedo(undo_.canUndo(), undo_.canRedo());
}

void PageDocument::NeuUndo(const std::string& label, Kind kind, int index) {
    const int slot = undo_.advance();
    const std::string file = snapshotFileName(session_.state().programDirectory, slot);
    undo_.datei[slot] = file;
    ToolUndoRedo();
    undo_.art[slot] = kindName(kind);
    undo_.aktion[slot] = label;
    undo_.index[slot] = static_cast<std::int16_t>(index);
    session_.notePageStep(slot_);  // the page's crash-recovery checkpoint follows every step
    if (!hasRecord(page(), {kind, index})) return;
    std::string error;
    const bool ok = withKindArrays(kind, [&](auto& array, auto& before) {
        return writeSnapshot(file, array[index], before, error);
    });
    if (!ok)
        session_.prompter().message(std::string(t("Fehler beim speichern der Datei: ", "Error while saving the file: ")) +
                                        file + "\r" + error,
                                    kIconCritical, t("Fehler", "Error"));
}

// Reads the slot's snapshot into the element as the label says; false on a read error.
bool PageDocument::undoAction(const std::string& label, Kind kind, int slot, std::string& error) {
    const std::string& file = undo_.datei[slot];
    const int n = undo_.index[slot];
    return withKindArrays(kind, [&](auto& array, auto&) {
        using Record = std::decay_t<decltype(array[0])>;
        if (label == "löschen") {
            Record rec;
            if (!readSnapshot(file, rec, static_cast<Record*>(nullptr), error)) return false;
            const int free = naechstesElement(page(), kind);
            undo_.index[slot] = static_cast<std::int16_t>(free);
            array[free] = std::move(rec);
            if (kind == Kind::Bild) aktivieren({kind, free});
            SeitenElement(free, kind, "einfügen");
            if (kind != Kind::Bild) aktivieren({kind, free});
        } else if (label == "ändern" || label == "größenänderung") {
            Record now, before;
            if (!readSnapshot(file, now, &before, error)) return false;
            if (n < 1 || n > array.upper()) return true;
            array[n] = std::move(before);  // the second record, the state before, wins
            markChanged();
            if (label == "ändern") aktivieren({kind, n});
            else applyGeometryFromRecord({kind, n});
        } else if (label == "eingefügt") {
            if (n < 1 || n > array.upper()) return true;
            removeControl({kind, n});
            array[n].deleted = kTrue;
            markChanged();
            PicWorkspace_Click();
        }
        return true;
    });
}

bool PageDocument::redoAction(const std::string& label, Kind kind, int slot, std::string& error) {
    const std::string& file = undo_.datei[slot];
    const int n = undo_.index[slot];
    return withKindArrays(kind, [&](auto& array, auto&) {
        using Record = std::decay_t<decltype(array[0])>;
        if (label == "löschen") {
            if (n < 1 || n > array.upper()) return true;
            removeControl({kind, n});
            array[n].deleted = kTrue;
            markChanged();
            PicWorkspace_Click();
        } else if (label == "änderung" || label == "größenänderung") {
            Record rec;
            if (!readSnapshot(file, rec, static_cast<Record*>(nullptr), error)) return false;
            if (n < 1 || n > array.upper()) return true;
            array[n] = std::move(rec);
            markChanged();
            if (label == "änderung") aktivieren({kind, n});
            else applyGeometryFromRecord({kind, n});
        } else if (label == "eingefügt") {
            Record rec;
            if (!readSnapshot(file, rec, static_cast<Record*>(nullptr), error)) return false;
            const int free = naechstesElement(page(), kind);
            undo_.index[slot] = static_cast<std::int16_t>(free);
            array[free] = std::move(rec);
            SeitenElement(free, kind, "einfügen");
            aktivieren({kind, free});
        }
        return true;
    });
}

void PageDocument::MachUndo() {
    const int slot = undo_.pos;
    PicWorkspace_Click();
    const std::string label = utf8Lower(undo_.aktion[static_cast<std::size_t>(slot)]);
    std::optional<Kind> kind = kindFromName(undo_.art[static_cast<std::size_t>(slot)]);
    std::string error;
    if (kind && !undoAction(label, *kind, slot, error)) {
        session_.prompter().message(
            std::string(t("Fehler beim bearbeiten vom UNDO: ", "Error while processing the UNDO: ")) + "\r" + error,
            kIconCritical, t("Fehler", "Error"));
        return;
    }
    undo_.stepBack();
    session_.notePageStep(slot_);
    refitExtent();  // an element taken back may have been what made the page large
    ToolUndoRedo();
    if (hooks_.geometryChanged) hooks_.geometryChanged();
}

void PageDocument::MachRedo() {
    if (!undo_.canRedo()) return;
    PicWorkspace_Click();
    undo_.stepForward();
    const int slot = undo_.pos;
    const std::string label = utf8Lower(undo_.aktion[static_cast<std::size_t>(slot)]);
    std::optional<Kind> kind = kindFromName(undo_.art[static_cast<std::size_t>(slot)]);
    std::string error;
    if (kind && !redoAction(label, *kind, slot, error)) {
        session_.prompter().message(
            std::string(t("Fehler beim bearbeiten vom UNDO: ", "Error while processing the UNDO: ")) + "\r" + error,
            kIconCritical, t("Fehler", "Error"));
    }
    session_.notePageStep(slot_);
    refitExtent();  // an element taken back may have been what made the page large
    ToolUndoRedo();
    if (hooks_.geometryChanged) hooks_.geometryChanged();
}

}  // namespace brindle::editor
