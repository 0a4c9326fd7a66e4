// Many pictures placed in rows by one gesture, with the album's insert
// settings: size, gaps, wrapping by count, by a right limit or at the view.
#include <algorithm>

#include "album/paths.h"
#include "editor/page_document.h"
#include "editor/page_operations.h"

namespace brindle::editor {

namespace {
constexpr const char* kLineSample = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
}

void PageDocument::insertManyPictures(Point start, const std::vector<PictureFile>& files, int viewWidth) {
    AlbumRecord& album = session_.album();
    FontSpec font = session_.state().options.font;
    if (font.name.empty()) font.name = "Arial";
    if (font.size <= 0) font.size = 12;
    const int lineHeight = metrics_ ? metrics_->labelSize(font, font.size, kLineSample).height : font.size * 4 / 3;
    if (album.insertRows <= 0) album.insertRows = 1;
    markChanged();
    album.modified = kTrue;
    int x = 0, y = 0, inRow = 0, rowHeight = 0, previousWidth = 0;
    for (const PictureFile& file : files) {
        const int n = NaechstesBild(page());
        const ElementRef ref{Kind::Bild, n};
        PictureElement& pic = page().pictures[n];
        pic.path = file.path;
        pic.hyperlink = "<vollbild>";
        if (file.width <= 0 || file.height <= 0) {
            pic.deleted = kTrue;  // an unreadable file is taken back; the next goes to the same spot
            continue;
        }
        pic.pictureWidth = static_cast<std::int16_t>(std::min(file.width, 32767));
        pic.pictureHeight = static_cast<std::int16_t>(std::min(file.height, 32767));
        pic.proportional = album.keepAspect;
        pic.ext.extLong[0] = album.insertOriginalSize != 0 ? -1 : 0;
        int w = album.insertOriginalSize != 0 ? file.width : album.insertWidth;
        int h = album.insertOriginalSize != 0 ? file.height : album.insertHeight;
        if (album.insertOriginalSize == 0 && isTrue(pic.proportional)) {
            const Groesse fit = BerechneGroesse(w, h, file.width, file.height, 0);
            w = std::max(1, toPixel(fit.width));
            h = std::max(1, toPixel(fit.height));
        }
        if (++inRow > 1) x += album.insertGapX + previousWidth;
        previousWidth = w;
        bool wrap = false;
        if (isTrue(album.insertInRows)) {
            wrap = inRow > album.insertRows;
            if (wrap) inRow = 1;
        } else if (isTrue(album.insertToMaxWidth)) {
            wrap = start.x + x + w > album.insertMaxWidth;
        } else {
            wrap = start.x + x + w > viewWidth;
        }
        if (wrap) {
            if (rowHeight == 0) rowHeight = h;
            y += album.insertGapY + rowHeight;
            if (isTrue(album.insertNameBelow)) y += lineHeight;
            x = 0;
            rowHeight = 0;
        }
        rowHeight = std::max(rowHeight, h);
        setBox(page(), ref, {start.x + x, start.y + y, w, h});
        pic.ext.extText[2] = std::to_string(w);
        pic.ext.extText[3] = std::to_string(h);
        aktivieren(ref);
        if (isTrue(album.insertNameBelow)) {
            std::string dir, name;
            teilePfad(file.path, dir, name);
            const int t = NaechsterText(page());
            TextElement& text = page().texts[t];
            text.text = text.ext.extText[0] = name;
            text.ext.extLong[1] = 1;
            text.font = font;
            const TextSize size = metrics_ ? metrics_->labelSize(font, font.size, name) : TextSize{w, lineHeight};
            setBox(page(), {Kind::Text, t}, {start.x + x, start.y + y + h, size.width, size.height});
            aktivieren({Kind::Text, t});
            SeitenElement(t, Kind::Text, "neu");
        }
        SeitenElement(n, Kind::Bild, "neu");
        takeBeforeCopy(ref);
        NeuUndo("Eingefügt", Kind::Bild, n);
        fitExtent(boxOf(page(), ref));
    }
    PicWorkspace_Click();
    if (hooks_.geometryChanged) hooks_.geometryChanged();
}

}  // namespace brindle::editor
