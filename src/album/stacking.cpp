#include "album/stacking.h"

#include <string>

namespace brindle {
namespace {

template <class T>
bool isLive(const DynArray<T>& array, int index) {
    return index >= 1 && index <= array.upper() && !isTrue(array[index].deleted);
}

template <class T>
int countLive(const DynArray<T>& array) {
    int n = 0;
    for (int i = 1; i <= array.upper(); ++i)
        if (!isTrue(array[i].deleted)) ++n;
    return n;
}

bool pointsAtLiveElement(const PageRecord& page, const StackEntry& e) {
    if (e.kind == "text") return isLive(page.texts, e.index);
    if (e.kind == "bild") return isLive(page.pictures, e.index);
    if (e.kind == "panorama" || e.kind == "pan360") return isLive(page.panoramas, e.index);
    if (e.kind == "suchmaschine") return isLive(page.searchBoxes, e.index);
    return false;
}

bool stackFits(const PageRecord& page) {
    if (!page.stack.allocated()) return false;
    int live = countLive(page.texts) + countLive(page.pictures) + countLive(page.panoramas) +
               countLive(page.searchBoxes);
    if (page.stack.upper() != live) return false;
    for (int i = 1; i <= page.stack.upper(); ++i)
        if (!pointsAtLiveElement(page, page.stack[i])) return false;
    return true;
}

template <class T>
void appendLive(DynArray<T>& array, const char* kind, DynArray<StackEntry>& stack) {
    if (!array.allocated()) array.resetToDummy();
    for (int i = 1; i <= array.upper(); ++i) {
        if (isTrue(array[i].deleted)) continue;
        stack.add() = StackEntry{i, kind};
        zPos(array[i]) = stack.upper();
    }
}

}  // namespace

void ReihenfolgePruefen(PageRecord& page) {
    if (!page.searchBoxes.allocated()) page.searchBoxes.resetToDummy();
    if (stackFits(page)) return;
    page.stack.resetToDummy();
    appendLive(page.texts, "text", page.stack);
    appendLive(page.pictures, "bild", page.stack);
    appendLive(page.panoramas, "panorama", page.stack);
    appendLive(page.searchBoxes, "suchmaschine", page.stack);
}

}  // namespace brindle
