#include "html/picture_index.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "album/album_file.h"
#include "album/encoding.h"
#include "album/page_file.h"
#include "album/paths.h"
#include "html/web_picture.h"

namespace brindle::html {

namespace {

constexpr const char* kGermanTitle = "BildIndex";
constexpr const char* kEnglishTitle = "PicIndex";

std::int16_t clamp16(long v) { return static_cast<std::int16_t>(std::clamp<long>(v, -32768, 32767)); }

bool isFrontCover(const std::string& t) { return t == "Umschlag Vorne" || t == "FrontCover"; }
bool isBackCover(const std::string& t) { return t == "Umschlag Hinten" || t == "BackCover"; }

// One picture of the album on its way to the index.
struct Planned {
    std::string source;
    std::string frameSpec;
    std::string pageTitle;
};

// A page's status text comes before its first picture is taken.
struct PageMark {
    std::size_t firstPicture = 0;
    std::string title;
};

class IndexRun {
public:
    IndexRun(Session& s, const PictureIndexCallbacks& cb) : s_(s), a_(s.album()), cb_(cb) {}

    PictureIndexOutcome run(bool atBeginning);

private:
    const char* t(const char* de, const char* en) const { return tr(s_.language(), de, en); }
    void status(const std::string& text) const {
        if (cb_.status) cb_.status(text);
    }
    bool openIndexPage(bool atBeginning);
    bool askToRebuild();
    void placeNewEntry(int entry, bool atBeginning);
    void plan();
    void planPage(int entry);
    void makeThumbnails();
    PageRecord& page() { return s_.page(slot_); }
    LabelSize measure(const FontSpec& font, const std::string& text) const;
    void addText(const FontSpec& font, const std::string& text, int top, int left, const std::string& link);
    void addPicture(int n, const Planned& p);
    std::string thumbnailPath(const std::string& source) const;

    Session& s_;
    AlbumRecord& a_;
    const PictureIndexCallbacks& cb_;
    PictureIndexOutcome out_;
    int slot_ = 0;
    std::string title_;
    std::vector<Planned> pictures_;
    std::vector<PageMark> marks_;
};

bool IndexRun::askToRebuild() {
    const std::string text = std::string(t("Der Bildindex ist bereits erstellt.", "The Index of pictures is allready created.")) +
                             "\r" + t("Soll er überschrieben werden?", "Should it be overwrited?");
    return s_.prompter().message(text, kButtonsYesNo | kIconExclamation, t("Warnung", "Attention")) == kYes;
}

void IndexRun::placeNewEntry(int entry, bool atBeginning) {
    DynArray<PageEntry>& list = a_.pages;
    int to = entry;
    if (atBeginning) {
        to = entry > 1 && isFrontCover(list[1].title) ? 2 : 1;
    } else if (entry > 1 && isBackCover(list[entry - 1].title)) {
        to = entry - 1;
    }
    movePageEntry(a_, entry, to);
    out_.entry = to;
}

bool IndexRun::openIndexPage(bool atBeginning) {
    for (int i = 1; i <= a_.pages.upper(); ++i) {
        if (!isPictureIndexTitle(a_.pages[i].title)) continue;
        if (!askToRebuild()) return false;
        if (a_.pages[i].slot == 0 && !s_.SeiteOeffnen(i, "", false)) return false;
        out_.entry = i;
        slot_ = a_.pages[i].slot;
        title_ = a_.pages[i].title;
        // The page is built anew on its place; background and buttons stay.
        page().texts.resetToDummy();
        page().pictures.resetToDummy();
        page().panoramas.resetToDummy();
        page().searchBoxes.resetToDummy();
        page().stack.resetToDummy();
        return true;
    }
    slot_ = s_.neueSeite("Index", false);
    title_ = t(kGermanTitle, kEnglishTitle);
    placeNewEntry(a_.pages.upper(), atBeginning);
    a_.pages[out_.entry].title = title_;
    fillPageTexts(page(), a_.title);
    if (PageEditor* e = s_.editor(slot_)) {
        e->setCaption(title_);
        e->setRemoveMenuText(s_.language() == Language::German ? title_ + " entfernen" : "Delete " + title_);
    }
    return true;
}

LabelSize IndexRun::measure(const FontSpec& font, const std::string& text) const {
    if (cb_.measureText) return cb_.measureText(font, text);
    // Without a text measurer: about half an em per character, 1.2 lines.
    const double px = (font.size == 0 ? 9 : font.size) * 96.0 / 72.0;
    return {static_cast<int>(std::ceil(px * 0.55 * static_cast<double>(utf8Length(text)))) + 4,
            static_cast<int>(std::ceil(px * 1.2)) + 2};
}

void IndexRun::addText(const FontSpec& font, const std::string& text, int top, int left, const std::string& link) {
    PageRecord& p = page();
    TextElement& e = p.texts.add();
    e.font = font;
    if (e.font.name.empty()) e.font.name = "Arial";
    e.text = e.ext.extText[0] = text;
    e.hyperlink = link;
    const LabelSize size = measure(e.font, text);
    e.top = clamp16(top);
    e.left = clamp16(left);
    e.width = clamp16(size.width);
    e.height = clamp16(size.height);
    p.stack.add() = StackEntry{p.texts.upper(), "text"};
    zPos(e) = p.stack.upper();
}

std::string IndexRun::thumbnailPath(const std::string& source) const {
    std::string dir, name;
    teilePfad(utf8Lower(source), dir, name);
    return a_.directory + kIndexThumbFolder + "/BSIndex" + name;
}

void IndexRun::addPicture(int n, const Planned& planned) {
    const int w = a_.indexThumbWidth, h = a_.indexThumbHeight;
    const IndexCell cell = indexCell(n, a_.indexColumns, w, h);
    PageRecord& p = page();
    PictureElement& e = p.pictures.add();
    e.path = thumbnailPath(planned.source);
    e.top = clamp16(cell.top);
    e.left = clamp16(cell.left);
    e.width = e.pictureWidth = clamp16(w);
    e.height = e.pictureHeight = clamp16(h);
    e.hyperlink = planned.source;
    e.ext.extText[0] = indexFrameSpec(planned.frameSpec);
    e.ext.extText[2] = std::to_string(w);
    e.ext.extText[3] = std::to_string(h);
    p.stack.add() = StackEntry{p.pictures.upper(), "bild"};
    zPos(e) = p.stack.upper();
    addText(a_.style.textFont, "zur Seite", cell.top + h, cell.left, planned.pageTitle);
}

void IndexRun::planPage(int entry) {
    const std::string title = a_.pages[entry].title;
    marks_.push_back({pictures_.size(), title});
    const bool wasClosed = a_.pages[entry].slot == 0;
    if (wasClosed && !s_.SeiteOeffnen(entry, "", true)) return;
    const int slot = a_.pages[entry].slot;
    if (slot == 0) return;
    const PageRecord& p = s_.page(slot);
    for (int i = 1; i <= p.pictures.upper(); ++i) {
        const PictureElement& e = p.pictures[i];
        // A picture repair may leave a folder's path; only files are pictures.
        std::error_code ec;
        if (isTrue(e.deleted) || !std::filesystem::is_regular_file(e.path, ec) || e.path.find("Mamor") != std::string::npos)
            continue;
        pictures_.push_back({e.path, e.ext.extText[0], title});
    }
    // Pages opened for the index only are closed again.
    if (wasClosed) {
        if (PageEditor* ed = s_.editor(slot)) ed->unload();
        s_.seiteGeschlossen(slot);
    }
}

void IndexRun::plan() {
    for (int i = 1; i <= a_.pages.upper(); ++i)
        if (!isPictureIndexTitle(a_.pages[i].title)) planPage(i);
}

void IndexRun::makeThumbnails() {
    std::vector<WebPicture> jobs;
    for (const Planned& p : pictures_) {
        WebPicture w;
        w.source = p.source;
        w.target = thumbnailPath(p.source);
        w.width = a_.indexThumbWidth;
        w.height = a_.indexThumbHeight;
        w.quality = a_.indexJpegQuality;
        w.frameSpec = p.frameSpec;
        jobs.push_back(std::move(w));
    }
    ThumbnailPool pool(std::move(jobs), thumbnailThreads(cb_.threads),
                       cb_.writeThumbnail ? cb_.writeThumbnail : ThumbnailWriter(speichereWebBild));
    std::size_t mark = 0;
    auto statusUpTo = [&](std::size_t picture) {
        for (; mark < marks_.size() && marks_[mark].firstPicture <= picture; ++mark)
            status(t("Bildindex generieren: ", "Generate picindex: ") + marks_[mark].title);
    };
    for (std::size_t i = 0; i < pictures_.size(); ++i) {
        statusUpTo(i);
        if (cb_.cancelled && cb_.cancelled()) {
            pool.stop();
            out_.result = PictureIndexResult::Cancelled;
            return;
        }
        std::string error;
        if (!pool.wait(i, error)) out_.failures.push_back(pictures_[i].source + ": " + error);
        addPicture(++out_.thumbnails, pictures_[i]);
    }
    statusUpTo(pictures_.size());
}

PictureIndexOutcome IndexRun::run(bool atBeginning) {
    status(t("Start Bildindex generieren ... ", "Start generate Picindex ... "));
    if (a_.directory.empty()) {
        s_.prompter().message(t("Um einen Bildindex zu erstellen, müssen Sie Ihr Album gespeichert haben.",
                                "To create a picture index you must save the album first."),
                              kIconExclamation, t("Bildindex", "Picture index"));
        out_.result = PictureIndexResult::NotSaved;
        return out_;
    }
    if (!openIndexPage(atBeginning)) {
        out_.result = PictureIndexResult::Declined;
        return out_;
    }
    addText(a_.style.headingFont, title_, 30, 30, "");
    std::error_code ec;
    std::filesystem::create_directories(a_.directory + kIndexThumbFolder, ec);
    plan();
    makeThumbnails();
    // Whatever was made stays on the page, so a cancelled run still leaves
    // a page whose every picture has its thumbnail and its page link.
    s_.state().pageSlots[slot_].modified = kTrue;
    a_.modified = kTrue;
    if (out_.result == PictureIndexResult::Cancelled) return out_;
    status(t("Bildindex neu zeichnen: ", "Draw new picindex: ") + title_);
    if (PageEditor* e = s_.editor(slot_)) e->show();
    status(t("Bildindex fertig", "Picindex ready"));
    return out_;
}

}  // namespace

bool isPictureIndexTitle(const std::string& title) { return title == kGermanTitle || title == kEnglishTitle; }

IndexCell indexCell(int n, int columns, int thumbWidth, int thumbHeight) {
    const int cols = std::max(1, columns);
    IndexCell c;
    // Rounded up in whole numbers: the same as adding 0.99 for up to 100
    // columns, without 1 / 100 + 0.99 falling just short of 1 in floating point.
    c.row = (n + cols - 1) / cols;
    c.column = n - (c.row - 1) * cols - 1;
    c.left = c.column * (thumbWidth + 50) + 50;
    c.top = (c.row - 1) * (thumbHeight + 50) + 100;
    return c;
}

std::string indexFrameSpec(const std::string& frameSpec) {
    std::vector<std::string> items(1);
    for (char ch : frameSpec) {
        if (ch == ',') items.emplace_back();
        else items.back() += ch;
    }
    if (items.size() < 6 || items[5] != "1") return {};
    // Only the width changes; a trailing comma the frame string had stays.
    return "6" + frameSpec.substr(frameSpec.find(','));
}

PictureIndexOutcome bildIndexErzeugen(Session& session, bool atBeginning, const PictureIndexCallbacks& callbacks) {
    IndexRun run(session, callbacks);
    return run.run(atBeginning);
}

}  // namespace brindle::html
