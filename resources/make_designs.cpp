// Draws the shipped designs into the installed resources folder:
//   "Albumrahmen und Blatt.jpg"        the album sheet the catalogue previews lie on
//   Vorlagen/NAME.vor, NAME.jpg         catalogue template and its preview
//   Vorlagen/NAME-Hintergrund.jpg, NAME-Umschlag.jpg, NAME-ButtonZurück.jpg,
//            NAME-ButtonInhalt.jpg, NAME-ButtonVor.jpg   the template's pictures
//   vorlagen/NAME.jpg                   the wizard's design (the page background)
//   vorlagen/NAME/ButtonZurück.jpg, ButtonInhalt.jpg, ButtonVor.jpg
// Usage: make_designs OUTDIR
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QRandomGenerator>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

#include "album/album_file.h"
#include "album/records.h"
#include "image/template_preview.h"

#include "button_glyph.h"

namespace {

constexpr int kTile = 400;
constexpr double kPi = 3.14159265358979;

brindle::Color albumColour(const QColor& c) {
    return brindle::Color(c.red()) | (brindle::Color(c.green()) << 8) | (brindle::Color(c.blue()) << 16);
}

// Draws `fn` nine times around the tile so shapes crossing an edge come
// back on the other side and the tile repeats without seams.
void wrapped(QPainter& p, int size, const std::function<void(QPainter&)>& fn) {
    for (int ox : {-size, 0, size})
        for (int oy : {-size, 0, size}) {
            p.save();
            p.translate(ox, oy);
            fn(p);
            p.restore();
        }
}

QImage fibres(QColor base, int count, int contrast, quint32 seed) {
    QImage img(kTile, kTile, QImage::Format_RGB32);
    img.fill(base);
    QRandomGenerator rng(seed);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < count; ++i) {
        const double x = rng.bounded(kTile), y = rng.bounded(kTile), len = 4 + rng.bounded(16);
        const double a = rng.generateDouble() * 2 * kPi;
        QColor c = rng.bounded(2) ? base.lighter(100 + contrast) : base.darker(100 + contrast);
        c.setAlpha(70);
        p.setPen(QPen(c, 1));
        wrapped(p, kTile, [&](QPainter& q) {
            q.drawLine(QPointF(x, y), QPointF(x + len * std::cos(a), y + len * std::sin(a)));
        });
    }
    return img;
}

QImage paperTile() { return fibres(QColor(0xF4, 0xEC, 0xD8), 1400, 12, 11); }

QImage linenTile() {
    QImage img = fibres(QColor(0xE3, 0xDA, 0xC6), 300, 8, 12);
    QRandomGenerator rng(13);
    QPainter p(&img);
    // Warp and weft: threads every 4 pixels, each a little lighter or darker.
    for (int i = 0; i < kTile; i += 4) {
        QColor warp = QColor(0xC9, 0xBD, 0xA3);
        warp.setAlpha(40 + rng.bounded(50));
        p.fillRect(QRect(i, 0, 2, kTile), warp);
        QColor weft = QColor(0xFA, 0xF5, 0xE8);
        weft.setAlpha(40 + rng.bounded(50));
        p.fillRect(QRect(0, i, kTile, 2), weft);
    }
    return img;
}

QImage nightTile() {
    QImage img(kTile, kTile, QImage::Format_RGB32);
    img.fill(QColor(0x0E, 0x16, 0x2E));
    QRandomGenerator rng(21);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    // Faint clouds of the milky way, then stars of three sizes.
    for (int i = 0; i < 18; ++i) {
        const double x = rng.bounded(kTile), y = rng.bounded(kTile), r = 40 + rng.bounded(70);
        wrapped(p, kTile, [&](QPainter& q) {
            QRadialGradient g(QPointF(x, y), r);
            g.setColorAt(0, QColor(0x3A, 0x4A, 0x7A, 40));
            g.setColorAt(1, QColor(0x3A, 0x4A, 0x7A, 0));
            q.setPen(Qt::NoPen);
            q.setBrush(g);
            q.drawEllipse(QPointF(x, y), r, r);
        });
    }
    for (int i = 0; i < 260; ++i) {
        const double x = rng.bounded(kTile), y = rng.bounded(kTile);
        const int kind = rng.bounded(20);
        const double r = kind == 0 ? 1.6 : kind < 5 ? 1.0 : 0.6;
        QColor c = rng.bounded(3) ? QColor(0xF4, 0xF1, 0xE0) : QColor(0xCF, 0xDD, 0xFF);
        c.setAlpha(kind == 0 ? 255 : 120 + rng.bounded(120));
        wrapped(p, kTile, [&](QPainter& q) {
            q.setPen(Qt::NoPen);
            q.setBrush(c);
            q.drawEllipse(QPointF(x, y), r, r);
        });
    }
    return img;
}

QImage seaTile() {
    QImage img(kTile, kTile, QImage::Format_RGB32);
    img.fill(QColor(0xD6, 0xEC, 0xF0));
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QRandomGenerator rng(31);
    // Swells whose period divides the tile, so each row wraps.
    for (int row = 0; row < 40; ++row) {
        const double y0 = row * 10.0, amp = 2.5 + rng.bounded(3), phase = rng.generateDouble() * 2 * kPi;
        const int periods = 2 + rng.bounded(3);
        QPainterPath path;
        for (int x = 0; x <= kTile; x += 4) {
            const double y = y0 + amp * std::sin(phase + x * periods * 2 * kPi / kTile);
            if (x == 0) path.moveTo(x, y);
            else path.lineTo(x, y);
        }
        QColor c = row % 3 ? QColor(0x9C, 0xCF, 0xDA) : QColor(0xF8, 0xFD, 0xFF);
        c.setAlpha(150);
        p.setPen(QPen(c, 1.4));
        wrapped(p, kTile, [&](QPainter& q) { q.drawPath(path); });
    }
    return img;
}

QImage woodTile() {
    QImage img(kTile, kTile, QImage::Format_RGB32);
    img.fill(QColor(0x6B, 0x42, 0x26));
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QRandomGenerator rng(41);
    // Grain: bands across the tile, bent by two waves of whole periods.
    for (int line = 0; line < 90; ++line) {
        const double y0 = rng.bounded(kTile), amp = 3 + rng.bounded(7), phase = rng.generateDouble() * 2 * kPi;
        QPainterPath path;
        for (int x = 0; x <= kTile; x += 4) {
            const double t = x * 2 * kPi / kTile;
            const double y = y0 + amp * std::sin(phase + t) + 2 * std::sin(3 * t + phase);
            if (x == 0) path.moveTo(x, y);
            else path.lineTo(x, y);
        }
        QColor c = rng.bounded(2) ? QColor(0x4E, 0x2E, 0x18) : QColor(0x8A, 0x5A, 0x36);
        c.setAlpha(60 + rng.bounded(90));
        p.setPen(QPen(c, 0.8 + rng.generateDouble() * 2.2));
        wrapped(p, kTile, [&](QPainter& q) { q.drawPath(path); });
    }
    return img;
}

QImage plainTile() {
    QImage img(kTile, kTile, QImage::Format_RGB32);
    img.fill(QColor(0xF7, 0xF7, 0xF5));
    return img;
}

struct Look {
    const char* name;
    QImage (*tile)();
    QColor coverBase, coverLine;  // the cover: the tile darkened to this, with a double line
    QColor buttonTop, buttonBottom, glyph;
    QColor heading, text, link, menuBack, menuText, menuHover;
};

const Look kLooks[] = {
    {"Papier", paperTile, QColor(0x7A, 0x5C, 0x3C), QColor(0xE9, 0xD8, 0xB0), QColor(0x9B, 0x74, 0x4C),
     QColor(0x6A, 0x4A, 0x2C), QColor(0xFB, 0xF4, 0xE4), QColor(0x5A, 0x3A, 0x1E), QColor(0x3A, 0x2E, 0x24),
     QColor(0x8A, 0x3B, 0x12), QColor(0x5A, 0x3A, 0x1E), QColor(0xF4, 0xEC, 0xD8), QColor(0xFF, 0xD8, 0x8A)},
    {"Leinen", linenTile, QColor(0x5C, 0x5A, 0x48), QColor(0xE3, 0xDA, 0xC6), QColor(0x76, 0x7A, 0x5A),
     QColor(0x4C, 0x50, 0x38), QColor(0xF3, 0xF0, 0xE2), QColor(0x3C, 0x44, 0x2A), QColor(0x33, 0x33, 0x2B),
     QColor(0x4C, 0x5E, 0x1E), QColor(0x4C, 0x50, 0x38), QColor(0xF3, 0xF0, 0xE2), QColor(0xD9, 0xE8, 0x9A)},
    {"Nachthimmel", nightTile, QColor(0x06, 0x0A, 0x18), QColor(0xC9, 0xB3, 0x6A), QColor(0x4A, 0x58, 0x88),
     QColor(0x22, 0x2A, 0x4E), QColor(0xF2, 0xE6, 0xB4), QColor(0xF2, 0xE6, 0xB4), QColor(0xDD, 0xE4, 0xF4),
     QColor(0x9F, 0xC8, 0xFF), QColor(0x0A, 0x10, 0x24), QColor(0xDD, 0xE4, 0xF4), QColor(0xF2, 0xD2, 0x6A)},
    {"Meer", seaTile, QColor(0x1C, 0x5A, 0x78), QColor(0xF4, 0xFB, 0xFF), QColor(0x2E, 0x8C, 0xA8),
     QColor(0x14, 0x56, 0x72), QColor(0xF4, 0xFB, 0xFF), QColor(0x0E, 0x4A, 0x66), QColor(0x1B, 0x33, 0x40),
     QColor(0x00, 0x6E, 0x8A), QColor(0x0E, 0x4A, 0x66), QColor(0xE6, 0xF4, 0xF7), QColor(0xFF, 0xE0, 0x8A)},
    {"Holz", woodTile, QColor(0x3A, 0x22, 0x12), QColor(0xD9, 0xB2, 0x6A), QColor(0xC9, 0x9E, 0x52),
     QColor(0x8A, 0x66, 0x2A), QColor(0x3A, 0x22, 0x12), QColor(0xF6, 0xDB, 0x9C), QColor(0xF8, 0xEE, 0xDC),
     QColor(0xFF, 0xD0, 0x7A), QColor(0x3A, 0x22, 0x12), QColor(0xF6, 0xDB, 0x9C), QColor(0xFF, 0xFF, 0xFF)},
    {"Schlicht", plainTile, QColor(0x4A, 0x4F, 0x56), QColor(0xDD, 0xDD, 0xDD), QColor(0x8A, 0x90, 0x98),
     QColor(0x5C, 0x62, 0x6A), QColor(0xFF, 0xFF, 0xFF), QColor(0x2A, 0x2E, 0x34), QColor(0x33, 0x33, 0x33),
     QColor(0x1F, 0x5F, 0xA8), QColor(0x4A, 0x4F, 0x56), QColor(0xF7, 0xF7, 0xF5), QColor(0xFF, 0xFF, 0xFF)},
};

QImage coverFrom(const QImage& tile, const Look& look) {
    QImage img = tile.copy();
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QColor veil = look.coverBase;
    veil.setAlpha(175);
    p.fillRect(img.rect(), veil);
    p.setPen(QPen(look.coverLine, 2));
    p.drawRect(QRectF(18, 18, kTile - 36, kTile - 36));
    p.setPen(QPen(look.coverLine, 1));
    p.drawRect(QRectF(26, 26, kTile - 52, kTile - 52));
    return img;
}

// A rounded button on a piece of the page, so its corners match the page.
QImage button(const QImage& tile, const Look& look, char glyph) {
    const int w = 96, h = 40;
    QImage img = tile.copy(0, 0, w, h);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient g(0, 0, 0, h);
    g.setColorAt(0, look.buttonTop);
    g.setColorAt(1, look.buttonBottom);
    p.setBrush(g);
    p.setPen(QPen(look.buttonBottom.darker(140), 1.5));
    p.drawRoundedRect(QRectF(1.5, 1.5, w - 3, h - 3), 12, 12);
    p.setPen(Qt::NoPen);
    p.setBrush(look.glyph);
    drawButtonGlyph(p, glyph, w / 2.0, h / 2.0);
    return img;
}

// The album lying open on a dark leather table: the sheet where previews draw their page.
QImage albumSheet() {
    const int w = 2 * brindle::kPreviewWidth, h = 2 * brindle::kPreviewHeight;
    QImage img = fibres(QColor(0x4A, 0x2A, 0x22), 600, 18, 51).scaled(w, h);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF sheet(2 * brindle::kSheetLeft, 2 * brindle::kSheetTop, 2 * brindle::kSheetWidth,
                       2 * brindle::kSheetHeight);
    for (int i = 6; i > 0; --i) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0, 0, 0, 18));
        p.drawRoundedRect(sheet.adjusted(-i + 4, -i + 6, i + 4, i + 6), 4, 4);
    }
    p.fillRect(sheet, QColor(0xFA, 0xF6, 0xEC));
    QPen stitch(QColor(0xC9, 0xA9, 0x5C), 1.5, Qt::DashLine);
    p.setPen(stitch);
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(12, 12, w - 24, h - 24), 10, 10);
    return img;
}

bool save(const QImage& img, const std::string& path) {
    if (img.save(QString::fromStdString(path), "JPG", 92)) return true;
    std::fprintf(stderr, "cannot write %s\n", path.c_str());
    return false;
}

brindle::FontSpec font(const QColor& c, int size, bool bold) {
    return brindle::FontSpec{albumColour(c), "Arial", size, brindle::toBool16(bold), brindle::kFalse,
                             brindle::kFalse};
}

// The template of a look; pictures named by `dir` + file name.
brindle::AlbumRecord templateOf(const Look& look, const std::string& dir) {
    const std::string n = look.name;
    brindle::AlbumRecord a;
    brindle::ladeStandards(a, "");
    a.title.clear();
    a.modified = brindle::kTrue;
    a.style.headingFont = font(look.heading, 14, true);
    a.style.textFont = font(look.text, 12, false);
    a.style.linkFont = font(look.link, 0, false);
    a.style.visitedLinkFont = a.style.linkFont;
    a.style.activeLinkFont = a.style.linkFont;
    a.menuColor1 = albumColour(look.menuBack);
    a.menuColor2 = albumColour(look.menuText);
    a.menuColor3 = albumColour(look.menuHover);
    for (brindle::PageRecord* page : {&a.pageDefaults, &a.coverDefaults}) {
        page->backgroundColor = albumColour(look.tile().pixelColor(0, 0));
        page->props.backButton = dir + n + "-ButtonZurück.jpg";
        page->props.contentsButton = dir + n + "-ButtonInhalt.jpg";
        page->props.forwardButton = dir + n + "-ButtonVor.jpg";
    }
    a.pageDefaults.background = dir + n + "-Hintergrund.jpg";
    a.coverDefaults.background = dir + n + "-Umschlag.jpg";
    return a;
}

bool makeLook(const Look& look, const std::string& out) {
    const std::string n = look.name;
    const std::string catalogue = out + "Vorlagen/", wizard = out + "vorlagen/", buttons = wizard + n + "/";
    std::filesystem::create_directories(buttons);
    const QImage tile = look.tile();
    const QImage back = button(tile, look, '<'), contents = button(tile, look, '='), forward = button(tile, look, '>');
    if (!save(tile, catalogue + n + "-Hintergrund.jpg") || !save(coverFrom(tile, look), catalogue + n + "-Umschlag.jpg") ||
        !save(back, catalogue + n + "-ButtonZurück.jpg") || !save(contents, catalogue + n + "-ButtonInhalt.jpg") ||
        !save(forward, catalogue + n + "-ButtonVor.jpg") || !save(tile, wizard + n + ".jpg") ||
        !save(back, buttons + "ButtonZurück.jpg") || !save(contents, buttons + "ButtonInhalt.jpg") ||
        !save(forward, buttons + "ButtonVor.jpg"))
        return false;
    // The preview reads the pictures where they are; the template names
    // them bare, so it finds them beside itself in any program directory.
    if (!brindle::zeichneVorlagenVorschau(templateOf(look, catalogue), out + brindle::kPreviewSheetPicture,
                                          catalogue + n + ".jpg")) {
        std::fprintf(stderr, "cannot draw the preview of %s\n", look.name);
        return false;
    }
    const brindle::FileResult r = brindle::writeAlbumFile(catalogue + n + ".vor", templateOf(look, ""));
    if (!r.ok()) std::fprintf(stderr, "cannot write %s.vor: %s\n", look.name, r.detail.c_str());
    return r.ok();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_designs OUTDIR\n");
        return 2;
    }
    const std::string out = std::string(argv[1]) + "/";
    std::filesystem::create_directories(out + "Vorlagen");
    if (!save(albumSheet(), out + brindle::kPreviewSheetPicture)) return 1;
    for (const Look& look : kLooks)
        if (!makeLook(look, out)) return 1;
    return 0;
}
