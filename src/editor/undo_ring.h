// The undo ring of one page window: 99 usable slots, each naming a
// snapshot file in "Temp/" that holds an element record as it is and as
// it was, plus the action label, kind and element number in memory.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "album/binary_codec.h"
#include "album/file_io.h"
#include "album/record_fields.h"

namespace brindle::editor {

inline constexpr int kUndoSlots = 100;  // 0..99; slot 0 is never written

struct UndoRing {
    int pos = 0;    // slot of the last step done; 0 is nothing to undo
    int first = 0;  // lowest slot undo may reach; stays 0, so history ends at a wrap
    int last = 0;   // newest slot, the end of redo
    std::array<std::string, kUndoSlots> datei;
    std::array<std::string, kUndoSlots> aktion;  // label as the caller gave it
    std::array<std::string, kUndoSlots> art;     // "Bild", "Text", "Panorama", "Suchmaschine"
    std::array<std::int16_t, kUndoSlots> index{};

    bool canUndo() const { return pos != first; }
    bool canRedo() const { return pos != last; }

    // The counting steps of NeuUndo: a new step after the last one (dropping
    // any redo), wrapping from 99 to 1. Returns the slot to fill.
    int advance();
    // Undo's step back: below 1 becomes 99 when `first` is above 0, else 0.
    void stepBack();
    // Redo's step forward: above 99 becomes 1.
    void stepForward();
};

// programDirectory + "Temp/brind" + day of month + seconds since midnight,
// a running number and the undo slot + ".tmp": unique within the day.
std::string snapshotFileName(const std::string& programDirectory, int undoSlot);

// Creates the folder a snapshot goes to when it went missing.
void ensureParentDirectory(const std::string& path);

// Writes `current` then `before`; false with the system's text in `error`.
template <class T>
bool writeSnapshot(const std::string& path, const T& current, const T& before, std::string& error) {
    BinaryWriter w;
    try {
        w.write(current);
        w.write(before);
    } catch (const CodecError& e) {
        error = e.what();
        return false;
    }
    ensureParentDirectory(path);
    IoResult io = writeFileAtomic(path, w.bytes());
    error = io.error;
    return io.ok;
}

// Reads the first record and, when `second` is given, the second one over it.
template <class T>
bool readSnapshot(const std::string& path, T& first, T* second, std::string& error) {
    std::string bytes;
    IoResult io = readWholeFile(path, bytes);
    if (!io.ok) {
        error = io.error;
        return false;
    }
    try {
        BinaryReader r(bytes);
        r.read(first);
        if (second) r.read(*second);
    } catch (const CodecError& e) {
        error = e.what();
        return false;
    }
    return true;
}

}  // namespace brindle::editor
