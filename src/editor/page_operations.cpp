#include "editor/page_operations.h"

#include <algorithm>
#include <iterator>

#include "album/encoding.h"

namespace brindle::editor {
namespace {

// Puts `entry` at position `to` and makes its element's ZPos follow; an
// entry naming no record just moves.
void place(PageRecord& page, int to, const StackEntry& entry) {
    page.stack[to] = entry;
    std::optional<Kind> kind = kindFromName(entry.kind);
    if (kind && hasRecord(page, {*kind, entry.index})) zPosOf(page, {*kind, entry.index}) = to;
}

void neu(PageRecord& page, ElementRef ref) {
    page.stack.add() = StackEntry{ref.index, stackKind(ref.kind)};
    zPosOf(page, ref) = page.stack.upper();
}

void loeschen(PageRecord& page, int z) {
    const int n = page.stack.upper();
    if (z < 1 || z > n) return;
    for (int i = z; i < n; ++i) place(page, i, page.stack[i + 1]);
    page.stack.resize(n - 1);
}

void einfuegen(PageRecord& page, ElementRef ref) {
    const int n = page.stack.upper();
    int z = zPosOf(page, ref);
    if (z < 1 || z > n + 1) z = n + 1;  // a record that never had a place goes to the front
    page.stack.resize(n + 1);
    for (int i = n; i >= z; --i) place(page, i + 1, page.stack[i]);
    place(page, z, StackEntry{ref.index, stackKind(ref.kind)});
}

void tausche(PageRecord& page, int a, int b) {
    const StackEntry first = page.stack[a];
    place(page, a, page.stack[b]);
    place(page, b, first);
}

void ganzVorn(PageRecord& page, int z) {
    const int n = page.stack.upper();
    const StackEntry saved = page.stack[z];
    for (int i = z; i < n; ++i) place(page, i, page.stack[i + 1]);
    place(page, n, saved);
}

void ganzHinten(PageRecord& page, int z) {
    const StackEntry saved = page.stack[z];
    for (int i = z; i >= 2; --i) place(page, i, page.stack[i - 1]);
    place(page, 1, saved);
}

template <class T>
int naechstes(DynArray<T>& array) {
    if (!array.allocated() || array.upper() < 0) array.resetToDummy();
    for (int i = 1; i <= array.upper(); ++i) {
        if (isTrue(array[i].deleted)) {
            array[i] = T{};
            return i;
        }
    }
    array.add();
    return array.upper();
}

}  // namespace

bool SeitenElement(PageRecord& page, PageSlot& slot, int number, std::string_view kindName, std::string_view verb) {
    std::optional<Kind> kind = kindFromName(kindName);
    const ElementRef ref{kind.value_or(Kind::Bild), number};
    if (!kind || !hasRecord(page, ref)) return false;
    const std::string v = utf8Lower(verb);
    static const char* const kVerbs[] = {"neu", "löschen", "einfügen", "nachvorn", "nachhinten", "ganzvorn",
                                         "ganzhinten"};
    if (std::find(std::begin(kVerbs), std::end(kVerbs), v) == std::end(kVerbs)) return false;
    const int z = zPosOf(page, ref);
    slot.modified = kTrue;
    if (!page.stack.allocated() || page.stack.upper() < 0) page.stack.resetToDummy();
    const int n = page.stack.upper();
    const bool inList = z >= 1 && z <= n;
    if (v == "neu") {
        neu(page, ref);
    } else if (v == "löschen") {
        loeschen(page, z);
    } else if (v == "einfügen") {
        einfuegen(page, ref);
    } else if (v == "nachvorn") {
        if (inList && z < n) tausche(page, z, z + 1);
    } else if (v == "nachhinten") {
        if (inList && z > 1) tausche(page, z, z - 1);
    } else if (v == "ganzvorn") {
        if (inList) ganzVorn(page, z);
    } else if (v == "ganzhinten") {
        if (inList) ganzHinten(page, z);
    }
    return v != "neu" && v != "löschen" && v != "einfügen";
}

int NaechstesBild(PageRecord& page) { return naechstes(page.pictures); }
int NaechsterText(PageRecord& page) { return naechstes(page.texts); }
int NaechstesPanorama(PageRecord& page) { return naechstes(page.panoramas); }
int NaechsteSuchmaschine(PageRecord& page) { return naechstes(page.searchBoxes); }

int naechstesElement(PageRecord& page, Kind kind) {
    switch (kind) {
        case Kind::Bild: return NaechstesBild(page);
        case Kind::Text: return NaechsterText(page);
        case Kind::Panorama: return NaechstesPanorama(page);
        case Kind::Suchmaschine: break;
    }
    return NaechsteSuchmaschine(page);
}

}  // namespace brindle::editor
