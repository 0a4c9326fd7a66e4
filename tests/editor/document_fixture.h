// A session with one new page and a document on it; text is measured
// with fixed numbers so font fitting and wrapping give exact values.
#pragma once

#include <filesystem>
#include <memory>

#include "editor/page_document.h"
#include "support/session_fixture.h"

namespace brindle::editor::test {

// A character is size/2 pixels wide, a line size + size/3 high.
class FakeMetrics : public TextMetrics {
public:
    static int charWidth(int size) { return std::max(1, size / 2); }
    static int lineHeight(int size) { return size + size / 3; }

    TextSize labelSize(const FontSpec&, int size, const std::string& text) override {
        int lines = 1, longest = 0, current = 0;
        for (char c : text) {
            if (c == '\r') continue;
            if (c == '\n') {
                ++lines;
                current = 0;
                continue;
            }
            longest = std::max(longest, ++current);
        }
        return {longest * charWidth(size), lines * lineHeight(size)};
    }

    // Greedy wrapping at blanks; the blank stays at the end of its line.
    std::vector<std::string> boxLines(const FontSpec& font, int width, const std::string& text) override {
        const std::size_t perLine = std::max(1, width / charWidth(fontSizeOf(font)));
        std::vector<std::string> lines;
        std::size_t start = 0;
        while (start <= text.size()) {
            std::size_t end = text.find('\n', start);
            std::string para = text.substr(start, end == std::string::npos ? std::string::npos : end - start);
            if (!para.empty() && para.back() == '\r') para.pop_back();
            wrap(para, perLine, lines);
            if (end == std::string::npos) break;
            start = end + 1;
        }
        return lines;
    }

private:
    static void wrap(std::string para, std::size_t perLine, std::vector<std::string>& lines) {
        if (para.empty()) lines.push_back("");
        while (!para.empty()) {
            if (para.size() <= perLine) {
                lines.push_back(para);
                break;
            }
            std::size_t cut = para.rfind(' ', perLine);
            cut = cut == std::string::npos ? perLine : cut + 1;
            lines.push_back(para.substr(0, cut));
            para = para.substr(cut);
        }
    }
};

class DocumentTest : public brindle::test::SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        start();
        session->AlbumNeu();
        doc = makeDocument(1);
    }

    std::unique_ptr<PageDocument> makeDocument(int slot) {
        auto d = std::make_unique<PageDocument>(*session, slot, &metrics);
        d->hooks().toolUndoRedo = [this](bool u, bool r) {
            canUndo = u;
            canRedo = r;
        };
        d->hooks().status = [this](const std::string& s) { statuses.push_back(s); };
        d->hooks().reihenfolgeAnwenden = [this](int start) { ordered.push_back(start); };
        return d;
    }

    PageRecord& page(int slot = 1) { return session->page(slot); }
    OptionsRecord& options() { return session->state().options; }

    int addPicture(Box b, const std::string& path = "a.jpg", int angle = 0) {
        PictureElement& p = page().pictures.add();
        p.left = static_cast<std::int16_t>(b.left);
        p.top = static_cast<std::int16_t>(b.top);
        p.width = static_cast<std::int16_t>(b.width);
        p.height = static_cast<std::int16_t>(b.height);
        p.path = path;
        p.pictureWidth = 400;
        p.pictureHeight = 200;
        p.ext.extLong[5] = angle;
        return page().pictures.upper();
    }
    int addText(Box b, const std::string& words, int mode = 0, int size = 10) {
        TextElement& t = page().texts.add();
        t.left = static_cast<std::int16_t>(b.left);
        t.top = static_cast<std::int16_t>(b.top);
        t.width = static_cast<std::int16_t>(b.width);
        t.height = static_cast<std::int16_t>(b.height);
        t.text = words;
        t.ext.extText[0] = words;
        t.ext.extLong[1] = mode;
        t.font = FontSpec{0, "Arial", size, kFalse, kFalse, kFalse};
        return page().texts.upper();
    }
    int addSearch(Box b) {
        SearchElement& s = page().searchBoxes.add();
        s.left = static_cast<std::int16_t>(b.left);
        s.top = static_cast<std::int16_t>(b.top);
        s.width = static_cast<std::int16_t>(b.width);
        s.height = static_cast<std::int16_t>(b.height);
        return page().searchBoxes.upper();
    }
    // Loads the page into the document as opening the window does.
    void load() {
        session->state().pageSlots[1].modified = kFalse;
        doc->NeuZeichnen();
        statuses.clear();
    }

    Box recordBox(ElementRef ref) { return boxOf(page(), ref); }
    bool modified(int slot = 1) { return isTrue(session->state().pageSlots[slot].modified); }
    std::string order(int slot = 1) {
        std::string s;
        const PageRecord& p = page(slot);
        for (int i = 1; i <= p.stack.upper(); ++i)
            s += (s.empty() ? "" : " ") + p.stack[i].kind.substr(0, 1) + std::to_string(p.stack[i].index);
        return s;
    }
    int snapshotCount() {
        int n = 0;
        for (const auto& e : std::filesystem::directory_iterator(home() + "Temp"))
            n += e.path().filename().string().starts_with("brind") && e.path().extension() == ".tmp";
        return n;
    }
    // A drag of a handle from (100, 100) by (dx, dy).
    void drag(int handle, int dx, int dy) {
        doc->pressHandle(handle, {100, 100});
        doc->moveHandle({100 + dx, 100 + dy});
        doc->releaseHandle();
    }

    FakeMetrics metrics;
    std::unique_ptr<PageDocument> doc;
    bool canUndo = false, canRedo = false;
    std::vector<std::string> statuses;
    std::vector<int> ordered;
};

}  // namespace brindle::editor::test
