// Writes the sample album: pictures drawn here, pages with every element
// kind, frames and every animation, made with our own writers.
// Usage: make_sample_album OUTDIR
#include <QColor>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/stacking.h"

using namespace brindle;

namespace {

constexpr double kPi = 3.14159265358979323846;

// A sine whose period divides the width: ridges drawn with it meet
// themselves at the two edges, so panoramas go round without a seam.
double wave(double x, int w, int k, double phase) { return std::sin(2 * kPi * k * x / w + phase); }

// Rolling hills, 0..1.
double hills(double x, int w, double seed) {
    return 0.5 + 0.28 * wave(x, w, 2, seed) + 0.15 * wave(x, w, 5, seed * 1.7) + 0.05 * wave(x, w, 13, seed * 2.3);
}

// Sharp summits, 0..1.
double summits(double x, int w, double seed) {
    const double a = 1 - std::fabs(std::sin(kPi * 3 * x / w + seed));
    const double b = 1 - std::fabs(std::sin(kPi * 7 * x / w + seed * 2.1));
    return std::clamp(0.15 + 0.6 * std::pow(a, 1.8) + 0.3 * std::pow(b, 2.2) + 0.03 * wave(x, w, 31, seed), 0.0, 1.0);
}

QColor mix(QColor a, QColor b, double t) {
    return QColor::fromRgbF(static_cast<float>(a.redF() + (b.redF() - a.redF()) * t),
                            static_cast<float>(a.greenF() + (b.greenF() - a.greenF()) * t),
                            static_cast<float>(a.blueF() + (b.blueF() - a.blueF()) * t));
}

struct Scene {
    QColor sky, land;
    double sunX;           // 0..1 of the width
    double seed;
    bool mountains = false;
    int lighthouseX = -1;  // picture x of a lighthouse on a rock, or none
};

QPainterPath ridgePath(int w, double base, double rise, const std::function<double(double)>& height) {
    QPainterPath path;
    path.moveTo(0, base + 1);
    for (int x = 0; x <= w; x += 2) path.lineTo(x, base - rise * height(x));
    path.lineTo(w, base + 1);
    path.closeSubpath();
    return path;
}

void drawLighthouse(QPainter& p, double x, double ground, double h) {
    const double tall = h * 0.27, bottom = h * 0.035, top = h * 0.024;
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x4A, 0x44, 0x3C));
    p.drawEllipse(QPointF(x, ground + h * 0.004), h * 0.13, h * 0.03);
    QPolygonF tower;
    tower << QPointF(x - bottom, ground) << QPointF(x - top, ground - tall) << QPointF(x + top, ground - tall)
          << QPointF(x + bottom, ground);
    QPainterPath shape;
    shape.addPolygon(tower);
    p.save();
    p.setClipPath(shape);
    p.fillRect(QRectF(x - bottom, ground - tall, 2 * bottom, tall), QColor(0xF4, 0xF1, 0xEA));
    for (int band = 0; band < 3; ++band)
        p.fillRect(QRectF(x - bottom, ground - tall + tall * (0.12 + 0.3 * band), 2 * bottom, tall * 0.14),
                   QColor(0xC0, 0x30, 0x2A));
    QLinearGradient shade(x - bottom, 0, x + bottom, 0);
    shade.setColorAt(0, QColor(0, 0, 0, 0));
    shade.setColorAt(1, QColor(0, 0, 0, 60));
    p.fillRect(QRectF(x - bottom, ground - tall, 2 * bottom, tall), shade);
    p.restore();
    const double lamp = ground - tall;
    p.setBrush(QColor(0x2A, 0x2A, 0x30));
    p.drawRect(QRectF(x - top * 1.4, lamp - h * 0.006, top * 2.8, h * 0.008));
    p.setBrush(QColor(0xFF, 0xE8, 0x90));
    p.drawRect(QRectF(x - top * 0.8, lamp - h * 0.032, top * 1.6, h * 0.026));
    QPolygonF roof;
    roof << QPointF(x - top * 1.1, lamp - h * 0.032) << QPointF(x, lamp - h * 0.055) << QPointF(x + top * 1.1, lamp - h * 0.032);
    p.setBrush(QColor(0xA0, 0x28, 0x22));
    p.drawPolygon(roof);
    QRadialGradient glow(x, lamp - h * 0.02, h * 0.08);
    glow.setColorAt(0, QColor(0xFF, 0xF0, 0xB0, 120));
    glow.setColorAt(1, QColor(0xFF, 0xF0, 0xB0, 0));
    p.setBrush(glow);
    p.drawEllipse(QPointF(x, lamp - h * 0.02), h * 0.08, h * 0.08);
}

// A landscape: sky with the sun, far and near hills or mountains, water
// with the sun's glitter; panoramas wrap at their edges.
QImage landscape(int w, int h, const Scene& s) {
    QImage img(w, h, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    const double horizon = h * 0.6;
    const QColor haze = mix(s.sky.lighter(150), QColor(255, 250, 240), 0.35);

    QLinearGradient sky(0, 0, 0, horizon);
    sky.setColorAt(0, s.sky.darker(135));
    sky.setColorAt(0.7, s.sky);
    sky.setColorAt(1, haze);
    p.fillRect(QRectF(0, 0, w, horizon + 1), sky);
    const QPointF sun(s.sunX * w, h * 0.28);
    QRadialGradient glow(sun, h * 0.4);
    glow.setColorAt(0, QColor(0xFF, 0xF2, 0xD0, 170));
    glow.setColorAt(1, QColor(0xFF, 0xE0, 0xA0, 0));
    p.setPen(Qt::NoPen);
    p.setBrush(glow);
    p.drawEllipse(sun, h * 0.4, h * 0.4);
    p.setBrush(QColor(0xFF, 0xF8, 0xE4));
    p.drawEllipse(sun, h * 0.05, h * 0.05);

    // Far ridge in the haze, near ridge in the land's colour.
    const QColor far = mix(s.land, haze, 0.55);
    if (s.mountains) {
        const QColor rockColour = mix(QColor(0x48, 0x58, 0x74), haze, 0.2);
        QPainterPath range = ridgePath(w, horizon, h * 0.42, [&](double x) { return summits(x, w, s.seed); });
        QLinearGradient rock(0, horizon - h * 0.42, 0, horizon);
        rock.setColorAt(0, rockColour.darker(110));
        rock.setColorAt(1, mix(rockColour, haze, 0.5));
        p.setBrush(rock);
        p.drawPath(range);
        // Snow on the summits, reaching further down the higher they rise.
        const double snowLine = horizon - h * 0.22;
        QPainterPath cap;
        cap.moveTo(0, horizon - h * 0.42 * summits(0, w, s.seed));
        for (int x = 0; x <= w; x += 2) cap.lineTo(x, horizon - h * 0.42 * summits(x, w, s.seed));
        for (int x = w; x >= 0; x -= 2) {
            const double top = horizon - h * 0.42 * summits(x, w, s.seed);
            cap.lineTo(x, top + std::max(0.0, snowLine - top) * (0.5 + 0.2 * wave(x, w, 53, s.seed)));
        }
        cap.closeSubpath();
        p.setBrush(QColor(0xF6, 0xF8, 0xFC));
        p.drawPath(cap);
    } else {
        p.setBrush(far);
        p.drawPath(ridgePath(w, horizon, h * 0.16, [&](double x) { return hills(x, w, s.seed + 3); }));
    }
    p.setBrush(s.land);
    p.drawPath(ridgePath(w, horizon, h * 0.11, [&](double x) { return std::max(0.0, hills(x, w, s.seed) - 0.35); }));

    QLinearGradient water(0, horizon, 0, h);
    water.setColorAt(0, mix(haze, QColor(0x3A, 0x7C, 0xA8), 0.55));
    water.setColorAt(0.35, QColor(0x2E, 0x6F, 0x9E));
    water.setColorAt(1, QColor(0x12, 0x38, 0x56));
    p.fillRect(QRectF(0, horizon, w, h - horizon), water);
    // Ripples closer together towards the horizon, the sun's glitter below it.
    for (int i = 1; i < 40; ++i) {
        const double t = i / 40.0;
        const double y = horizon + (h - horizon) * t * t;
        p.setPen(QPen(QColor(255, 255, 255, static_cast<int>(20 + 40 * t)), 1 + t));
        for (double x = std::fmod(i * 37.0, 90.0) - 90; x < w; x += 90 + 60 * t)
            p.drawLine(QPointF(x, y), QPointF(x + 30 + 50 * t, y));
        const double spread = h * (0.03 + 0.12 * t);
        p.setPen(QPen(QColor(0xFF, 0xF0, 0xC8, static_cast<int>(200 - 120 * t)), 1.5 + 2 * t));
        const double shift = spread * 0.5 * std::sin(i * 2.3);
        p.drawLine(QPointF(sun.x() - spread + shift, y), QPointF(sun.x() + spread * 0.6 + shift, y));
    }
    if (s.lighthouseX >= 0) drawLighthouse(p, s.lighthouseX, horizon + h * 0.01, h);
    return img;
}

// The cover's own background: deep water at night, light bands and waves.
QImage coverBackground(int w, int h) {
    QImage img(w, h, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient g(0, 0, w * 0.3, h);
    g.setColorAt(0, QColor(0x12, 0x24, 0x3A));
    g.setColorAt(0.6, QColor(0x1B, 0x3F, 0x58));
    g.setColorAt(1, QColor(0x1E, 0x55, 0x66));
    p.fillRect(img.rect(), g);
    for (int i = 0; i < 5; ++i) {
        QLinearGradient band(0, 0, w, h * 0.6);
        QColor c(0xFF, 0xFF, 0xFF, 0);
        band.setColorAt(0.1 * i + 0.2, c);
        c.setAlpha(10);
        band.setColorAt(0.1 * i + 0.25, c);
        c.setAlpha(0);
        band.setColorAt(0.1 * i + 0.3, c);
        p.fillRect(img.rect(), band);
    }
    for (int i = 0; i < 60; ++i) {
        const double y = h * 0.55 + i * h * 0.008 * (1 + i * 0.05);
        QPainterPath line;
        line.moveTo(0, y);
        for (int x = 0; x <= w; x += 8) line.lineTo(x, y + 4 * std::sin(x * 0.012 + i * 0.7));
        p.setPen(QPen(QColor(0xC8, 0xE6, 0xF2, 10 + i / 3), 1));
        p.setBrush(Qt::NoBrush);
        p.drawPath(line);
    }
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

// Colours are written as the records keep them: red in the low byte.
constexpr Color kDeepBlue = 0x5A3A1F;  // #1F3A5A
constexpr Color kCreamText = 0xC8E6F2;    // #F2E6C8
constexpr Color kLightBlue = 0xEAC89C;  // #9CC8EA
constexpr Color kSlate = 0x5A5450;     // #50545A
constexpr Color kDarkText = 0x303030;

TextElement caption(int top, int left, int width, const std::string& words, Color color = kSlate) {
    TextElement t = text(top, left, width, 18, words, 10, color);
    t.font.italic = kTrue;
    return t;
}

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::fprintf(stderr, "usage: make_sample_album OUTDIR [RECORDED_DIR]\n");
        return 2;
    }
    // The files go to OUTDIR; the album names its files in RECORDED_DIR, the
    // folder it will be installed to, so that no build path is shipped.
    const std::string out = std::string(argv[1]) + "/";
    const std::string dir = argc == 3 ? std::string(argv[2]) + "/" : out;
    std::filesystem::create_directories(out);
    struct Photo {
        const char* name;
        int w, h;
        Scene scene;
    };
    const Photo photos[] = {
        {"Morgen am See.jpg", 1200, 800, {QColor(0xF2, 0xB6, 0x8A), QColor(0x3E, 0x5C, 0x3A), 0.25, 1}},
        {"Mittag am Meer.jpg", 1200, 800, {QColor(0x6F, 0xAE, 0xE2), QColor(0xC9, 0xB2, 0x7C), 0.6, 2}},
        {"Abendrot.jpg", 1200, 800, {QColor(0xD9, 0x6A, 0x4A), QColor(0x2B, 0x2A, 0x3A), 0.78, 3}},
        {"Bergpanorama.jpg", 3200, 600, {QColor(0x8C, 0xC0, 0xEA), QColor(0x4C, 0x6B, 0x4F), 0.4, 4, true}},
        {"Rundblick.jpg", 2400, 600, {QColor(0x98, 0xC8, 0xF0), QColor(0x5A, 0x7A, 0x4A), 0.3, 5, false, 1850}},
    };
    for (const Photo& ph : photos)
        if (!save(landscape(ph.w, ph.h, ph.scene), out + ph.name)) return 1;
    if (!save(coverBackground(1600, 1200), out + "Einband.jpg")) return 1;

    AlbumRecord album;
    ladeStandards(album, "");
    album.pageDefaults.background = "Standard-Papier.jpg";
    album.coverDefaults.background = dir + "Einband.jpg";
    // The tree in the album's navy, its links in cream, light blue under the pointer.
    album.menuColor1 = kDeepBlue;
    album.menuColor2 = kCreamText;
    album.menuColor3 = kLightBlue;
    album.style.linkColorsActive = kTrue;
    album.style.linkFont.color = 0x8A5A1F;         // #1F5A8A
    album.style.visitedLinkFont.color = 0x7A4A5A;  // #5A4A7A
    album.style.activeLinkFont.color = 0x2040C0;   // #C04020

    auto addPage = [&](const std::string& title, PageRecord page) -> bool {
        ReihenfolgePruefen(page);
        PageEntry& e = album.pages.add();
        e.title = title;
        e.fileName = title + ".apg";
        e.directory = dir;
        ++album.pageCount;
        FileResult r = writePageFile(out + e.fileName, page);
        if (!r.ok()) std::fprintf(stderr, "%s\n", r.detail.c_str());
        return r.ok();
    };

    // Cover: title, a framed picture, a few lines beside it, a tip of the day.
    PageRecord cover = album.coverDefaults;
    cover.texts.add() = text(48, 60, 520, 50, "Sommer am Wasser", 28, kCreamText, true);
    cover.texts.add() = caption(118, 62, 520, "Ein Beispielalbum von Brindlesee", kLightBlue);
    PictureElement& framed = cover.pictures.add() = picture(168, 60, 420, 280, dir + "Morgen am See.jpg", 1200, 800);
    framed.ext.extText[0] = "12,60,40,3355443,None,1,";
    framed.ext.extText[2] = "444";
    framed.ext.extText[3] = "304";
    cover.texts.add() = text(168, 510, 260, 120,
                             "Ein Sommer an Seen und am Meer:\r\nMorgenlicht, Mittagssonne,\r\nRegen, Schnee und Abendrot.",
                             12, kCreamText);
    cover.texts.add() = caption(464, 60, 300, "Gedanke des Tages", kLightBlue);
    TextElement& tip = cover.texts.add() = text(480, 60, 520, 30, "", 13, kCreamText);
    tip.ext.extLong[4] = 1;
    std::string tips;
    for (int d = 1; d <= 31; ++d) tips += "Gedanke zum " + std::to_string(d) + ". des Monats;";
    tip.ext.extText[1] = tips;
    cover.title = "Sommer am Wasser";
    cover.description = "Ein Beispielalbum von Brindlesee";

    // Contents page listing the others, with a word on each.
    PageRecord contents = album.pageDefaults;
    contents.texts.add() = text(48, 40, 400, 30, "Inhalt", 20, kDeepBlue, true);
    const char* names[][2] = {{"Umschlag Vorne", "Titelseite mit dem Gedanken des Tages"},
                              {"Effekte", "Spiegelung, Regen, Schnee und Laufband"},
                              {"Rundblick", "Panorama zum Drehen und die Suche"},
                              {"Umschlag Hinten", "zum Schluss, bl\xc3\xa4ttert von selbst weiter"}};
    for (int i = 0; i < 4; ++i) {
        TextElement& t = contents.texts.add() = text(100 + 36 * i, 60, 150, 24, names[i][0], 13, kDeepBlue, true);
        t.hyperlink = std::string(names[i][0]) + ".htm";
        contents.texts.add() = caption(108 + 36 * i, 230, 270, names[i][1]);
    }
    PictureElement& sunset = contents.pictures.add() = picture(104, 520, 240, 160, dir + "Abendrot.jpg", 1200, 800);
    sunset.ext.extText[0] = "8,60,40,15790320,None,1,";
    contents.title = "Inhalt";
    contents.description = "Inhaltsverzeichnis";

    // Effects: lake, rain, snow, a scrolling strip, underwater as plain.
    PageRecord effects = album.pageDefaults;
    effects.texts.add() = text(48, 40, 500, 30, "Wasser, Regen und Schnee", 18, kDeepBlue, true);
    PictureElement& lake = effects.pictures.add() = picture(110, 40, 300, 200, dir + "Morgen am See.jpg", 1200, 800);
    lake.ext.extText[1] = "Lake,3,50,0,0,0";
    lake.hyperlink = "<vor>";
    effects.texts.add() = caption(318, 40, 300, "Spiegelung am Morgen \xe2\x80\x93 ein Klick f\xc3\xbchrt weiter");
    PictureElement& rain = effects.pictures.add() = picture(110, 380, 300, 200, dir + "Mittag am Meer.jpg", 1200, 800);
    rain.ext.extText[0] = "6,50,50,0,None,1,";
    rain.ext.extText[1] = "Rain,4,60,0,0,0";
    effects.texts.add() = caption(322, 380, 300, "Regen \xc3\xbc" "ber dem Meer");
    PictureElement& snow = effects.pictures.add() = picture(350, 40, 300, 200, dir + "Abendrot.jpg", 1200, 800);
    snow.ext.extText[0] = "6,50,12,16777215,None,1,";
    snow.ext.extText[1] = "Snow,2,60,0,0,0";
    effects.texts.add() = caption(562, 40, 300, "Schnee im Abendrot");
    PictureElement& strip = effects.pictures.add() = picture(350, 380, 300, 120, dir + "Bergpanorama.jpg", 3200, 600);
    strip.ext.extText[1] = "Pano,5,2,0,0,0";
    effects.texts.add() = caption(476, 380, 300, "Die Berge ziehen vorbei");
    PictureElement& under = effects.pictures.add() = picture(502, 380, 120, 80, dir + "Mittag am Meer.jpg", 1200, 800);
    under.ext.extText[1] = "UnderWater,3,5,4,4,0,0,0";
    effects.texts.add() = caption(522, 512, 170, "Unter Wasser");
    effects.title = "Effekte";
    effects.description = "See, Regen, Schnee und Panoramastreifen";

    // Panorama viewer with two pictures linked by a hotspot, and a search box.
    PageRecord pano = album.pageDefaults;
    pano.texts.add() = text(48, 40, 560, 60,
                            "Rundblick \xe2\x80\x93 ziehen zum Drehen, Rad zum Zoomen,\r\n"
                            "ein Klick auf den Leuchtturm f\xc3\xbchrt in die Berge",
                            13, kDarkText);
    PanoramaElement& viewer = pano.panoramas.add();
    viewer.top = 112;
    viewer.left = 40;
    viewer.width = 560;
    viewer.height = 260;
    viewer.hotspotCount = 1;
    viewer.hotspots[0].urlName = dir + "Rundblick.jpg";
    viewer.hotspots[0].zoomStart = "Full";
    viewer.hotspots[0].xStart = 1200;
    viewer.hotspots[0].x1[0] = 1700;
    viewer.hotspots[0].x2[0] = 2000;
    viewer.hotspots[0].y1[0] = 150;
    viewer.hotspots[0].y2[0] = 350;
    viewer.hotspots[0].target[0] = 1;
    viewer.hotspots[1].urlName = dir + "Bergpanorama.jpg";
    viewer.hotspots[1].zoomStart = "100";
    SearchElement& search = pano.searchBoxes.add();
    search.top = 392;
    search.left = 40;
    search.width = 500;
    search.height = 120;
    search.caption = "Suchen";
    pano.title = "Rundblick";
    pano.description = "Panorama mit Hotspot und Suche";

    // Back cover: it goes on to the front cover by itself after 3 seconds.
    PageRecord back = album.coverDefaults;
    back.texts.add() = text(48, 60, 520, 40, "Danke f\xc3\xbcrs Anschauen!", 24, kCreamText, true);
    back.texts.add() = text(110, 60, 520, 50,
                            "In wenigen Sekunden bl\xc3\xa4ttert das Album\r\nvon selbst zur\xc3\xbc" "ck zum Anfang.", 13,
                            kLightBlue);
    PictureElement& evening = back.pictures.add() = picture(185, 60, 330, 220, dir + "Abendrot.jpg", 1200, 800);
    evening.ext.extText[0] = "10,60,40,3355443,None,1,";
    back.title = "Auf Wiedersehen";
    back.description = "R\xc3\xbc" "ckseite, die von selbst weiterbl\xc3\xa4ttert";
    autoForwardSeconds(back.props) = 3;

    if (!addPage("Umschlag Vorne", cover) || !addPage("Inhalt", contents) || !addPage("Effekte", effects) ||
        !addPage("Rundblick", pano) || !addPage("Umschlag Hinten", back))
        return 1;
    prepareAlbumSave(album, dir + "Beispielalbum.apr");
    FileResult r = writeAlbumFile(out + "Beispielalbum.apr", album);
    if (!r.ok()) return std::fprintf(stderr, "%s\n", r.detail.c_str()), 1;
    return 0;
}
