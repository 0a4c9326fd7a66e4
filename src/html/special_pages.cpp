#include "html/special_pages.h"

#include "album/album_file.h"
#include "html/picture_index.h"

#include <algorithm>
#include <functional>
#include <vector>

#include "album/page_file.h"
#include "editor/elements.h"
#include "editor/page_operations.h"

namespace brindle::html {
namespace {

bool isFrontCover(const std::string& title) { return title == "Umschlag Vorne" || title == "FrontCover"; }
bool isBackCover(const std::string& title) { return title == "Umschlag Hinten" || title == "BackCover"; }

// Takes every element of `kind` off the page: its stack entries go, the
// others keep their order and their ZPos follows, the array is emptied.
void clearKind(PageRecord& page, editor::Kind kind) {
    const std::string name = editor::stackKind(kind);
    std::vector<StackEntry> kept;
    for (int i = 1; i <= page.stack.upper(); ++i) {
        std::optional<editor::Kind> k = editor::kindFromName(page.stack[i].kind);
        if (!k || *k != kind) kept.push_back(page.stack[i]);
    }
    page.stack.resetToDummy();
    for (const StackEntry& e : kept) {
        page.stack.add() = e;
        std::optional<editor::Kind> k = editor::kindFromName(e.kind);
        const editor::ElementRef ref{k.value_or(editor::Kind::Bild), e.index};
        if (k && editor::hasRecord(page, ref)) editor::zPosOf(page, ref) = page.stack.upper();
    }
    switch (kind) {
        case editor::Kind::Text: page.texts.resetToDummy(); break;
        case editor::Kind::Suchmaschine: page.searchBoxes.resetToDummy(); break;
        default: break;
    }
}

}  // namespace

std::string SpecialPages::vorneName() const {
    const AlbumRecord& a = s_.state().album;
    for (int i = 1; i <= a.pages.upper(); ++i)
        if (isFrontCover(a.pages[i].title)) return a.pages[i].title;
    return t("Umschlag Vorne", "FrontCover");
}

SpecialPages::Target SpecialPages::existingOrNew(const char* de, const char* en, const std::string& questionDe,
                                                 const std::string& questionEn) {
    AlbumRecord& a = s_.album();
    for (int i = 1; i <= a.pages.upper(); ++i) {
        if (a.pages[i].title != de && a.pages[i].title != en) continue;
        const std::string text = (s_.language() == Language::German ? questionDe : questionEn) + "\r" +
                                 t("Soll er überschrieben werden?", "Should it be overwrited?");
        if (s_.prompter().message(text, kButtonsYesNo | kIconQuestion, t("Warnung", "Attention")) != kYes) return {};
        if (!s_.SeiteOeffnen(i, "", false) || a.pages[i].slot <= 0) return {};
        const int slot = a.pages[i].slot;
        clearKind(s_.page(slot), editor::Kind::Text);
        return {i, slot};
    }
    const std::string title = t(de, en);
    const int slot = s_.neueSeite(title, false);
    fillPageTexts(s_.page(slot), a.title);
    if (PageEditor* e = s_.editor(slot))
        e->setRemoveMenuText(s_.language() == Language::German ? title + " entfernen" : "Delete " + title);
    return {a.pages.upper(), slot, true};
}

int SpecialPages::addText(int slot, int top, int left, FontSpec font, const std::string& text,
                          const std::string& link) {
    PageRecord& page = s_.page(slot);
    if (font.name.empty()) font.name = "Arial";
    const editor::TextSize size = metrics_.labelSize(font, editor::fontSizeOf(font), text);
    const int n = editor::NaechsterText(page);
    TextElement& e = page.texts[n];
    e.font = font;
    e.text = text;
    e.ext.extText[0] = text;
    e.hyperlink = link;
    e.top = static_cast<std::int16_t>(top);
    e.left = static_cast<std::int16_t>(left);
    e.width = static_cast<std::int16_t>(std::clamp(size.width, 0, 32767));
    e.height = static_cast<std::int16_t>(std::clamp(size.height, 0, 32767));
    const int height = e.height;
    editor::SeitenElement(page, s_.state().pageSlots[slot], n, "text", "neu");
    return height;
}

void SpecialPages::finish(int slot) {
    s_.state().pageSlots[slot].modified = kTrue;
    s_.album().modified = kTrue;
    if (PageEditor* e = s_.editor(slot)) e->show();
    if (s_.hooks().refreshExplorer) s_.hooks().refreshExplorer();
}

bool SpecialPages::umschlagVorne() {
    const Target target = existingOrNew("Umschlag Vorne", "FrontCover", "Umschlag Vorne ist bereits erstellt.",
                                        "Frontcover is allready created.");
    if (!target.slot) return false;
    AlbumRecord& a = s_.album();
    // A new cover comes first; one rebuilt stays where the user put it.
    if (target.made) movePageEntry(s_.album(), target.index, 1);
    const int index = s_.entryOfSlot(target.slot);
    const std::string opens = index == 1 && a.pages.upper() >= 2 ? a.pages[2].title : std::string{};
    addText(target.slot, 160, 150, a.style.headingFont, a.title, opens);
    finish(target.slot);
    return true;
}

bool SpecialPages::umschlagHinten() {
    const Target target = existingOrNew("Umschlag Hinten", "BackCover", "Umschlag Hinten ist bereits erstellt.",
                                        "Backcover is allready created.");
    if (!target.slot) return false;
    finish(target.slot);
    return true;
}

bool SpecialPages::inhalt(bool atBeginning) {
    AlbumRecord& a = s_.album();
    const int before = a.pages.upper();  // the list without a new contents page
    const Target target = existingOrNew("Inhalt", "AlbumDirectory", "Das Inhaltsverzeichnis ist bereits erstellt.",
                                        "The Index of contents is allready created.");
    if (!target.slot) return false;
    if (target.made) {
        // New: at the beginning after a front cover, or at the end before a back cover.
        int to = target.index;
        if (atBeginning) to = before >= 1 && isFrontCover(a.pages[1].title) ? 2 : 1;
        else if (before >= 1 && isBackCover(a.pages[before].title)) to = before;
        movePageEntry(s_.album(), target.index, to);
    }
    const int index = s_.entryOfSlot(target.slot);
    int top = 30;
    int height = addText(target.slot, top, 30, a.style.headingFont, a.pages[index].title, {});
    for (int i = 1; i <= a.pages.upper(); ++i) {
        const std::string title = a.pages[i].title;
        if (istSpezialseite(title)) continue;
        top += height + 20;
        height = addText(target.slot, top, 60, a.style.textFont, title, title);
    }
    finish(target.slot);
    s_.SpeicherDieseForm(target.slot, false);
    return true;
}

bool SpecialPages::suchseite() {
    const Target target = existingOrNew("Suchen", "Search", "Die Suchseite ist bereits erstellt.",
                                        "The searchpage is allready created.");
    if (!target.slot) return false;
    AlbumRecord& a = s_.album();
    PageRecord& page = s_.page(target.slot);
    // A rebuilt search page keeps one form, not one more each time.
    clearKind(page, editor::Kind::Suchmaschine);
    addText(target.slot, 30, 30, a.style.headingFont, a.pages[target.index].title, {});
    const int n = editor::NaechsteSuchmaschine(page);
    SearchElement& box = page.searchBoxes[n];
    box.top = 100;
    box.left = 100;
    box.width = 420;
    box.height = 120;
    box.caption = t("Suchen", "Search");
    box.font = a.style.textFont;
    if (box.font.name.empty()) box.font.name = "Arial";
    editor::SeitenElement(page, s_.state().pageSlots[target.slot], n, "suchmaschine", "neu");
    finish(target.slot);
    return true;
}

bool runSpecialPages(Session& session, editor::TextMetrics& metrics, const SpecialPagesRequest& request,
                     const GenerationCallbacks& callbacks) {
    SpecialPages pages(session, metrics);
    struct Step {
        bool wanted;
        const char* de;
        const char* en;
        std::function<void()> run;
    };
    bool indexCancelled = false;
    const Step steps[] = {
        {request.pictureIndex, "Bildindex erstellen ...", "Generate picture index ...",
         [&] {
             PictureIndexCallbacks cb;
             cb.cancelled = callbacks.cancelled;
             cb.measureText = [&metrics](const FontSpec& font, const std::string& text) {
                 const editor::TextSize size = metrics.labelSize(font, editor::fontSizeOf(font), text);
                 return LabelSize{size.width, size.height};
             };
             if (callbacks.progress)
                 cb.status = [&](const std::string& status) { callbacks.progress(0, 1, status); };
             indexCancelled = bildIndexErzeugen(session, request.contentsAtBeginning, cb).result ==
                              PictureIndexResult::Cancelled;
         }},
        {request.contents, "Inhaltsverzeichnis erstellen ...", "Generate table of contents ...",
         [&] { pages.inhalt(request.contentsAtBeginning); }},
        {request.frontCover, "Umschlag vorne erstellen ...", "Generate front cover ...",
         [&] { pages.umschlagVorne(); }},
        {request.search, "Suchseite erstellen ...", "Generate search page ...", [&] { pages.suchseite(); }},
        {request.backCover, "Umschlag hinten erstellen ...", "Generate back cover ...",
         [&] { pages.umschlagHinten(); }},
    };
    const int total = static_cast<int>(std::count_if(std::begin(steps), std::end(steps),
                                                     [](const Step& s) { return s.wanted; }));
    int done = 0;
    for (const Step& step : steps) {
        if (!step.wanted) continue;
        if (callbacks.cancelled && callbacks.cancelled()) return false;
        if (callbacks.progress) callbacks.progress(done, total, tr(session.language(), step.de, step.en));
        step.run();
        if (indexCancelled) return false;
        ++done;
    }
    if (callbacks.progress)
        callbacks.progress(done, total, tr(session.language(), "Spezialseiten fertig", "Special pages ready"));
    return true;
}

}  // namespace brindle::html
