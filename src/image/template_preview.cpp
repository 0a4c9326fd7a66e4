#include "image/template_preview.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image/reduce.h"

namespace brindle {

namespace {

struct Rect {
    int left, top, width, height;
};

constexpr Rect kSheet{kSheetLeft, kSheetTop, kSheetWidth, kSheetHeight};

Rect intersect(const Rect& a, const Rect& b) {
    const int l = std::max(a.left, b.left), t = std::max(a.top, b.top);
    const int r = std::min(a.left + a.width, b.left + b.width), btm = std::min(a.top + a.height, b.top + b.height);
    return {l, t, std::max(0, r - l), std::max(0, btm - t)};
}

Rect toPreview(int left, int top, int width, int height) {
    return {previewX(left), previewY(top), std::max(1, previewLength(width)), std::max(1, previewLength(height))};
}

// Fills `r` (clipped to the sheet) with a 0x00BBGGRR colour.
void fill(cDIBSection& dib, Rect r, Color c) {
    r = intersect(r, kSheet);
    const Surface s = dib.hdc();
    for (int y = r.top; y < r.top + r.height; ++y) {
        std::uint8_t* px = s.row(y) + r.left * 3;
        for (int x = 0; x < r.width; ++x, px += 3) {
            px[0] = std::uint8_t(c >> 16);
            px[1] = std::uint8_t(c >> 8);
            px[2] = std::uint8_t(c);
        }
    }
}

// Copies `pic` with its top-left corner at (x, y), clipped to `clip`.
void place(cDIBSection& dib, const cDIBSection& pic, int x, int y, const Rect& clip = kSheet) {
    const Rect r = intersect({x, y, pic.Width(), pic.Height()}, clip);
    if (r.width > 0 && r.height > 0)
        bitBlt(dib.hdc(), r.left, r.top, r.width, r.height, pic.hdc(), r.left - x, r.top - y, SRCCOPY);
}

// The picture at `path` made w x h (its own size when w is 0); empty when it cannot be read.
cDIBSection loadSized(const std::string& path, int w, int h) {
    cDIBSection out;
    if (path.empty() || !std::filesystem::is_regular_file(path)) return out;
    PictureFile file = LoadPictureFile(path);
    cDIBSection pic;
    if (!file.picture || !pic.CreateFromPicture(file.picture)) return out;
    if (w <= 0) return pic;
    smoothResize(pic, out, w, h);
    return out;
}

// At page scale: each side 17/50 of the picture's, at least one pixel.
cDIBSection loadScaled(const std::string& path) {
    cDIBSection pic = loadSized(path, 0, 0);
    cDIBSection out;
    if (!pic.empty())
        smoothResize(pic, out, std::max(1, previewLength(pic.Width())), std::max(1, previewLength(pic.Height())));
    return out;
}

void samplePhoto(cDIBSection& dib, const PreviewBox& b) {
    const Rect r = toPreview(b.left, b.top, b.width, b.height);
    fill(dib, r, kSampleBorder);
    const Rect inner{r.left + 2, r.top + 2, r.width - 4, r.height - 4};
    fill(dib, {inner.left, inner.top, inner.width, inner.height / 2}, kSampleSky);
    fill(dib, {inner.left, inner.top + inner.height / 2, inner.width, inner.height - inner.height / 2}, kSampleLand);
}

void textBars(cDIBSection& dib, const TextElement& t) {
    const int size = t.font.size > 0 ? t.font.size : 9;
    const int lineHeight = std::max(2, previewLength(size * 2));
    const int barHeight = std::max(1, lineHeight / 2);
    const Rect box = toPreview(t.left, t.top, t.width, t.height);
    std::vector<std::string> lines;
    std::string line;
    for (char c : t.text) {
        if (c == '\r') continue;
        if (c == '\n') {
            lines.push_back(line);
            line.clear();
        } else {
            line += c;
        }
    }
    lines.push_back(line);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const int y = box.top + int(i) * lineHeight;
        if (y + barHeight > box.top + box.height) break;
        const int width = std::min(box.width, std::max(1, previewLength(int(lines[i].size()) * size / 2)));
        if (!lines[i].empty()) fill(dib, {box.left, y, width, barHeight}, t.font.color);
    }
}

}  // namespace

void previewSheet(cDIBSection& preview, const cDIBSection& sheet) {
    if (!sheet.empty() && smoothResize(sheet, preview, kPreviewWidth, kPreviewHeight)) return;
    preview.Create(kPreviewWidth, kPreviewHeight);
    const Surface s = preview.hdc();
    for (int y = 0; y < kPreviewHeight; ++y) {
        std::uint8_t* px = s.row(y);
        for (int x = 0; x < kPreviewWidth; ++x, px += 3) {
            const bool onSheet = y >= kSheetTop && y < kSheetTop + kSheetHeight && x >= kSheetLeft &&
                                 x < kSheetLeft + kSheetWidth;
            const Color c = onSheet ? kPreviewSheet : kPreviewTable;
            px[0] = std::uint8_t(c >> 16);
            px[1] = std::uint8_t(c >> 8);
            px[2] = std::uint8_t(c);
        }
    }
}

void previewBackground(cDIBSection& preview, const PageRecord& page) {
    fill(preview, kSheet, page.backgroundColor);
    const cDIBSection tile = loadScaled(page.background);
    if (tile.empty()) return;
    for (int y = kSheetTop; y < kSheetTop + kSheetHeight; y += tile.Height())
        for (int x = kSheetLeft; x < kSheetLeft + kSheetWidth; x += tile.Width()) place(preview, tile, x, y);
}

void previewButtons(cDIBSection& preview, const PageRecord& page) {
    std::vector<cDIBSection> buttons;
    for (const std::string* path : {&page.props.backButton, &page.props.contentsButton, &page.props.forwardButton}) {
        cDIBSection b = loadScaled(*path);
        if (!b.empty()) buttons.push_back(std::move(b));
    }
    if (buttons.empty()) return;
    int total = 4 * (int(buttons.size()) - 1), tallest = 0;
    for (const cDIBSection& b : buttons) {
        total += b.Width();
        tallest = std::max(tallest, b.Height());
    }
    int x = kSheetLeft + (kSheetWidth - total) / 2;
    const int y = kSheetTop + kSheetHeight - 6 - tallest;
    for (const cDIBSection& b : buttons) {
        place(preview, b, x, y + (tallest - b.Height()) / 2);
        x += b.Width() + 4;
    }
}

void previewPictures(cDIBSection& preview, const PageRecord& page) {
    bool any = false;
    for (int i = 1; i <= page.pictures.upper(); ++i) {
        const PictureElement& e = page.pictures[i];
        if (isTrue(e.deleted)) continue;
        any = true;
        const Rect r = toPreview(e.left, e.top, e.width, e.height);
        const cDIBSection pic = loadSized(e.path, r.width, r.height);
        if (pic.empty()) fill(preview, r, kMissingPicture);
        else place(preview, pic, r.left, r.top);
    }
    if (!any)
        for (const PreviewBox& b : kSamplePhotos) samplePhoto(preview, b);
}

void previewPanoramas(cDIBSection& preview, const PageRecord& page) {
    for (int i = 1; i <= page.panoramas.upper(); ++i) {
        const PanoramaElement& e = page.panoramas[i];
        if (isTrue(e.deleted)) continue;
        const Rect r = toPreview(e.left, e.top, e.width, e.height);
        cDIBSection pic;
        for (const PanoHotspot& h : e.hotspots) {
            if (h.urlName.empty()) continue;
            pic = loadSized(h.urlName, r.width, r.height);
            break;
        }
        if (pic.empty()) fill(preview, r, kEmptyPanorama);
        else place(preview, pic, r.left, r.top);
    }
}

void previewTexts(cDIBSection& preview, const AlbumRecord& album, const PageRecord& page) {
    bool any = false;
    for (int i = 1; i <= page.texts.upper(); ++i) {
        if (isTrue(page.texts[i].deleted)) continue;
        any = true;
        textBars(preview, page.texts[i]);
    }
    if (any) return;
    const PreviewBox& h = kSampleHeading;
    fill(preview, toPreview(h.left, h.top, h.width, h.height), album.style.headingFont.color);
    for (const PreviewBox& l : kSampleLines)
        fill(preview, toPreview(l.left, l.top, l.width, l.height), album.style.textFont.color);
}

bool zeichneVorlagenVorschau(const AlbumRecord& album, const std::string& sheetPath, const std::string& jpegPath,
                             const std::function<void(int)>& step) {
    auto report = [&](int n) {
        if (step) step(n);
    };
    const PageRecord& page = album.pageDefaults;
    cDIBSection preview;
    report(0);
    previewSheet(preview, loadSized(sheetPath, 0, 0));
    report(1);
    previewBackground(preview, page);
    report(2);
    previewButtons(preview, page);
    report(3);
    previewPictures(preview, page);
    report(4);
    previewPanoramas(preview, page);
    report(5);
    previewTexts(preview, album, page);
    report(6);
    return SaveJPG(preview, jpegPath, 90).ok;
}

}  // namespace brindle
