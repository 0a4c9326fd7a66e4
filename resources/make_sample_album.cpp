// Writes the sample album: pictures drawn here, pages with every element
// kind, frames and every animation, made with our own writers.
// Usage: make_sample_album OUTDIR
#include <QColor>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/stacking.h"

using namespace brindle;

namespace {

// A landscape: sky, sun, hills and water, in the given mood.
QImage landscape(int w, int h, QColor sky, QColor land, double sunX) {
    QImage img(w, h, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient g(0, 0, 0, h);
    g.setColorAt(0, sky.darker(130));
    g.setColorAt(0.55, sky.lighter(140));
    g.setColorAt(0.56, QColor(0x2E, 0x6F, 0x9E));
    g.setColorAt(1, QColor(0x14, 0x3D, 0x5C));
    p.fillRect(img.rect(), g);
    QRadialGradient sun(sunX * w, h * 0.3, h * 0.12);
    sun.setColorAt(0, QColor(0xFF, 0xF4, 0xC8));
    sun.setColorAt(1, QColor(0xFF, 0xC8, 0x60, 0));
    p.setBrush(sun);
    p.setPen(Qt::NoPen);
    p.drawEllipse(QPointF(sunX * w, h * 0.3), h * 0.12, h * 0.12);
    QPainterPath hills;
    hills.moveTo(0, h * 0.56);
    for (int x = 0; x <= w; x += 4)
        hills.lineTo(x, h * 0.56 - h * 0.12 * (0.5 + 0.5 * std::sin(x * 6.0 / w + 1.3)) * (0.6 + 0.4 * std::sin(x * 17.0 / w)));
    hills.lineTo(w, h * 0.56);
    hills.closeSubpath();
    p.setBrush(land);
    p.drawPath(hills);
    p.setPen(QPen(QColor(255, 255, 255, 70), 1));
    for (int y = static_cast<int>(h * 0.6); y < h; y += 6) p.drawLine(0, y, w, y + 1);
    return img;
}

bool save(const QImage& img, const std::string& path) {
    if (img.save(QString::fromStdString(path), path.ends_with(".gif") ? "PNG" : nullptr, 90)) return true;
    std::fprintf(stderr, "cannot write %s\n", path.c_str());
    return false;
}

TextElement text(int top, int left, int width, int height, const std::string& words, int size, Color color,
                 bool bold = false) {
    TextElement t;
    t.top = static_cast<std::int16_t>(top);
    t.left = static_cast<std::int16_t>(left);
    t.width = static_cast<std::int16_t>(width);
    t.height = static_cast<std::int16_t>(height);
    t.text = words;
    t.font = FontSpec{color, "Arial", size, toBool16(bold), kFalse, kFalse};
    t.ext.extText[0] = words;
    return t;
}

PictureElement picture(int top, int left, int width, int height, const std::string& path, int pw, int ph) {
    PictureElement p;
    p.top = static_cast<std::int16_t>(top);
    p.left = static_cast<std::int16_t>(left);
    p.width = static_cast<std::int16_t>(width);
    p.height = static_cast<std::int16_t>(height);
    p.path = path;
    p.proportional = kTrue;
    p.pictureWidth = static_cast<std::int16_t>(pw);
    p.pictureHeight = static_cast<std::int16_t>(ph);
    p.ext.extText[2] = std::to_string(width);
    p.ext.extText[3] = std::to_string(height);
    return p;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_sample_album OUTDIR\n");
        return 2;
    }
    const std::string dir = std::string(argv[1]) + "/";
    std::filesystem::create_directories(dir);
    struct Photo {
        const char* name;
        QColor sky, land;
        double sun;
        int w, h;
    };
    const Photo photos[] = {
        {"Morgen am See.jpg", QColor(0xF2, 0xB6, 0x8A), QColor(0x3E, 0x5C, 0x3A), 0.25, 1200, 800},
        {"Mittag am Meer.jpg", QColor(0x7F, 0xB8, 0xE6), QColor(0xC9, 0xB2, 0x7C), 0.6, 1200, 800},
        {"Abendrot.jpg", QColor(0xD9, 0x6A, 0x4A), QColor(0x2B, 0x2A, 0x3A), 0.8, 1200, 800},
        {"Bergpanorama.jpg", QColor(0x9C, 0xC8, 0xEA), QColor(0x4C, 0x6B, 0x4F), 0.4, 3200, 600},
        {"Rundblick.jpg", QColor(0xA8, 0xD0, 0xF0), QColor(0x5A, 0x7A, 0x4A), 0.7, 2400, 600},
    };
    for (const Photo& ph : photos)
        if (!save(landscape(ph.w, ph.h, ph.sky, ph.land, ph.sun), dir + ph.name)) return 1;

    AlbumRecord album;
    ladeStandards(album, "");
    album.pageDefaults.background = "Standard-Papier.jpg";
    album.coverDefaults.background = "Standard-Umschlag.jpg";
    const Color navy = 0x5A3A1F, dark = 0x303030;

    auto addPage = [&](const std::string& title, PageRecord page) -> bool {
        ReihenfolgePruefen(page);
        PageEntry& e = album.pages.add();
        e.title = title;
        e.fileName = title + ".apg";
        e.directory = dir;
        ++album.pageCount;
        FileResult r = writePageFile(dir + e.fileName, page);
        if (!r.ok()) std::fprintf(stderr, "%s\n", r.detail.c_str());
        return r.ok();
    };

    // Cover: title, a framed picture, a tip of the day.
    PageRecord cover = album.coverDefaults;
    cover.texts.add() = text(40, 60, 520, 50, "Sommer am Wasser", 28, 0xC8E6F2, true);
    PictureElement& framed = cover.pictures.add() = picture(120, 60, 420, 280, dir + "Morgen am See.jpg", 1200, 800);
    framed.ext.extText[0] = "12,60,40,3355443,None,1,";
    framed.ext.extText[2] = "444";
    framed.ext.extText[3] = "304";
    TextElement& tip = cover.texts.add() = text(420, 60, 520, 30, "", 12, 0xE0E0E0);
    tip.ext.extLong[4] = 1;
    std::string tips;
    for (int d = 1; d <= 31; ++d) tips += "Gedanke zum " + std::to_string(d) + ". des Monats;";
    tip.ext.extText[1] = tips;
    cover.title = "Sommer am Wasser";
    cover.description = "Ein Beispielalbum von Brindlesee";

    // Effects: lake, rain, snow, a scrolling strip, underwater as plain.
    PageRecord effects = album.pageDefaults;
    effects.texts.add() = text(20, 40, 500, 30, "Wasser, Regen und Schnee", 18, navy, true);
    PictureElement& lake = effects.pictures.add() = picture(70, 40, 300, 200, dir + "Morgen am See.jpg", 1200, 800);
    lake.ext.extText[1] = "Lake,3,50,0,0,0";
    lake.hyperlink = "<vor>";
    PictureElement& rain = effects.pictures.add() = picture(70, 380, 300, 200, dir + "Mittag am Meer.jpg", 1200, 800);
    rain.ext.extText[0] = "6,50,50,0,None,1,";
    rain.ext.extText[1] = "Rain,4,60,0,0,0";
    PictureElement& snow = effects.pictures.add() = picture(300, 40, 300, 200, dir + "Abendrot.jpg", 1200, 800);
    snow.ext.extText[0] = "6,50,50,16777215,None,1,";
    snow.ext.extText[1] = "Snow,2,60,0,0,0";
    PictureElement& strip = effects.pictures.add() = picture(300, 380, 300, 120, dir + "Bergpanorama.jpg", 3200, 600);
    strip.ext.extText[1] = "Pano,5,2,0,0,0";
    PictureElement& under = effects.pictures.add() = picture(520, 380, 150, 100, dir + "Mittag am Meer.jpg", 1200, 800);
    under.ext.extText[1] = "UnderWater,3,5,4,4,0,0,0";
    autoForwardSeconds(effects.props) = 0;
    effects.title = "Effekte";
    effects.description = "See, Regen, Schnee und Panoramastreifen";

    // Panorama viewer with two pictures linked by a hotspot, and a search box.
    PageRecord pano = album.pageDefaults;
    pano.texts.add() = text(20, 40, 560, 60,
                            "Rundblick \xe2\x80\x93 ziehen zum Drehen,\r\nRad zum Zoomen, Rahmen f\xc3\xbchrt weiter", 14,
                            dark);
    PanoramaElement& viewer = pano.panoramas.add();
    viewer.top = 90;
    viewer.left = 40;
    viewer.width = 560;
    viewer.height = 260;
    viewer.hotspotCount = 1;
    viewer.hotspots[0].urlName = dir + "Rundblick.jpg";
    viewer.hotspots[0].zoomStart = "Full";
    viewer.hotspots[0].x1[0] = 1700;
    viewer.hotspots[0].x2[0] = 2000;
    viewer.hotspots[0].y1[0] = 150;
    viewer.hotspots[0].y2[0] = 350;
    viewer.hotspots[0].target[0] = 1;
    viewer.hotspots[1].urlName = dir + "Bergpanorama.jpg";
    viewer.hotspots[1].zoomStart = "100";
    SearchElement& search = pano.searchBoxes.add();
    search.top = 380;
    search.left = 40;
    search.width = 500;
    search.height = 120;
    search.caption = "Suchen";
    pano.title = "Rundblick";
    pano.description = "Panorama mit Hotspot und Suche";
    autoForwardSeconds(pano.props) = 30;

    // Contents page listing the others.
    PageRecord contents = album.pageDefaults;
    contents.texts.add() = text(30, 40, 400, 30, "Inhalt", 20, navy, true);
    const char* names[] = {"Umschlag Vorne", "Effekte", "Rundblick"};
    for (int i = 0; i < 3; ++i) {
        TextElement& t = contents.texts.add() = text(80 + 30 * i, 60, 300, 24, names[i], 12, navy);
        t.hyperlink = std::string(names[i]) + ".htm";
    }
    contents.title = "Inhalt";
    contents.description = "Inhaltsverzeichnis";

    if (!addPage("Umschlag Vorne", cover) || !addPage("Inhalt", contents) || !addPage("Effekte", effects) ||
        !addPage("Rundblick", pano))
        return 1;
    prepareAlbumSave(album, dir + "Beispielalbum.apr");
    FileResult r = writeAlbumFile(dir + "Beispielalbum.apr", album);
    if (!r.ok()) return std::fprintf(stderr, "%s\n", r.detail.c_str()), 1;
    return 0;
}
