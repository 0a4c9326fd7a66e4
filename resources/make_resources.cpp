// Draws the default pictures and writes the default template "Album.vor"
// into the installed resources folder. Usage: make_resources OUTDIR
#include <QColor>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>
#include <cstdio>
#include <filesystem>
#include <string>

#include "album/album_file.h"
#include "album/records.h"

#include "button_glyph.h"

namespace {

// Warm paper with fine fibres; tiles without visible seams because the
// fibres wrap around the edges.
QImage paper(int size, QColor base, quint32 seed) {
    QImage img(size, size, QImage::Format_RGB32);
    img.fill(base);
    QRandomGenerator rng(seed);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < 900; ++i) {
        int x = rng.bounded(size), y = rng.bounded(size), len = 4 + rng.bounded(14);
        int shade = rng.bounded(2) ? 14 : -14;
        QColor c = base.lighter(100 + shade);
        c.setAlpha(60);
        p.setPen(QPen(c, 1));
        double dx = len * (rng.generateDouble() - 0.5), dy = len * (rng.generateDouble() - 0.5);
        for (int ox : {-size, 0, size})
            for (int oy : {-size, 0, size}) p.drawLine(QPointF(x + ox, y + oy), QPointF(x + ox + dx, y + oy + dy));
    }
    return img;
}

// A round button with a glyph: arrow left, arrow right or a contents list.
QImage button(char glyph) {
    const int w = 96, h = 40;
    QImage img(w, h, QImage::Format_RGB32);
    img.fill(QColor(0xC0, 0xC0, 0xC0));
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient g(0, 0, 0, h);
    g.setColorAt(0, QColor(0x3A, 0x6E, 0xA5));
    g.setColorAt(1, QColor(0x1F, 0x3F, 0x66));
    p.setBrush(g);
    p.setPen(QPen(QColor(0x16, 0x2D, 0x4A), 1.5));
    p.drawRoundedRect(QRectF(1, 1, w - 2, h - 2), 12, 12);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xF5, 0xF1, 0xE6));
    drawButtonGlyph(p, glyph, w / 2.0, h / 2.0);
    return img;
}

QImage cover(int size) {
    QImage img = paper(size, QColor(0x2B, 0x3A, 0x55), 7);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QColor gold(0xC9, 0xA9, 0x5C);
    p.setPen(QPen(gold, 2));
    p.drawRect(QRectF(18, 18, size - 36, size - 36));
    p.setPen(QPen(gold, 1));
    p.drawRect(QRectF(26, 26, size - 52, size - 52));
    return img;
}

bool save(const QImage& img, const std::string& path) {
    if (img.save(QString::fromStdString(path), "JPG", 92)) return true;
    std::fprintf(stderr, "cannot write %s\n", path.c_str());
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_resources OUTDIR\n");
        return 2;
    }
    const std::string dir = std::string(argv[1]) + "/";
    std::filesystem::create_directories(dir);
    bool ok = save(paper(400, QColor(0xF4, 0xEE, 0xE0), 1), dir + "Standard-Papier.jpg") &&
              save(cover(400), dir + "Standard-Umschlag.jpg") &&
              save(button('<'), dir + "ButtonZurück.jpg") && save(button('=') , dir + "ButtonInhalt.jpg") &&
              save(button('>'), dir + "ButtonVor.jpg");
    if (!ok) return 1;

    // The default template: the program's defaults, pictures by name so
    // that every program directory finds them.
    brindle::AlbumRecord album;
    brindle::ladeStandards(album, "");
    album.title.clear();
    album.modified = brindle::kTrue;
    brindle::FileResult r = brindle::writeAlbumFile(dir + "Album.vor", album);
    if (!r.ok()) {
        std::fprintf(stderr, "cannot write Album.vor: %s\n", r.detail.c_str());
        return 1;
    }
    return 0;
}
