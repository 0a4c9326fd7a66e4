#include "sample_records.h"

#include <string>

namespace brindle::test {
namespace {

std::string txt(const char* stem, int seed) { return std::string(stem) + std::to_string(seed); }

FontSpec filledFont(int seed) {
    return FontSpec{static_cast<Color>(0x010203 * seed), txt("Font", seed), 7 + seed, 1, kTrue, 2};
}

template <std::size_t N>
std::array<std::uint8_t, N> spareBytes(int seed) {
    std::array<std::uint8_t, N> a{};
    for (std::size_t i = 0; i < N; ++i) a[i] = static_cast<std::uint8_t>(0xA0 + seed + i);
    return a;
}

PanoHotspot filledHotspot(int seed) {
    PanoHotspot h;
    h.urlName = txt("/pics/pano", seed) + ".jpg";
    h.alternative = txt("alt", seed);
    for (int i = 0; i < 11; ++i) {
        h.x1[i] = static_cast<std::int16_t>(seed + i);
        h.x2[i] = static_cast<std::int16_t>(-seed - i);
        h.y1[i] = static_cast<std::int16_t>(100 * i);
        h.y2[i] = static_cast<std::int16_t>(32767 - i);
        h.target[i] = static_cast<std::int16_t>(i % 3);
    }
    h.nextTime = 5 + seed;
    h.zoomStart = "Full";
    h.xStart = -17;
    h.yStart = 23;
    h.values = {1, -2, 3, -4};
    h.spare = spareBytes<20>(seed);
    h.ext = filledExt(seed + 1);
    return h;
}

}  // namespace

ExtBlock filledExt(int seed) {
    ExtBlock e;
    for (int i = 0; i < 7; ++i) e.extLong[i] = seed * 1000 + i - 3;
    e.extLongs1.add() = seed;
    e.extLongs1.add() = -seed;
    e.extLongs2.resetToDummy();  // allocated, no entries
    for (int i = 0; i < 7; ++i) e.extText[i] = txt("ext", seed * 10 + i);
    e.extTexts1.add() = "eins";
    e.extTexts2.add() = "Grüße €";
    e.extFont = filledFont(seed);
    return e;
}

PageRecord filledPage(int seed) {
    PageRecord p;
    p.background = "C:\\Bilder\\Hintergrund.jpg";
    p.backgroundColor = 0x00123456;
    p.props = {"zurück.jpg", "inhalt.jpg", "vor.jpg", filledExt(seed)};
    PanoramaElement& pano = p.panoramas.add();
    pano.top = -5;
    pano.left = 6;
    pano.width = 300;
    pano.height = 200;
    pano.deleted = 1;
    pano.spare = spareBytes<6>(seed);
    pano.hotspotCount = 2;
    pano.currentHotspot = 1;
    for (int i = 0; i < 21; ++i) pano.hotspots[static_cast<std::size_t>(i)] = filledHotspot(i);
    pano.spareFlag = -9;
    pano.ext = filledExt(seed + 2);
    PictureElement& pic = p.pictures.add();
    pic = PictureElement{10, 20, 30, 40, "/pics/a b.jpg", kFalse, spareBytes<6>(seed + 1), "http://x.example/",
                         kTrue, 640, 480, filledExt(seed + 3)};
    p.pictures.add().deleted = kTrue;
    TextElement& text = p.texts.add();
    text = TextElement{1, 2, 3, 4, "Zeile 1\r\nZeile <2>", kTrue, spareBytes<6>(seed + 2), filledFont(seed),
                       "Inhalt", filledExt(seed + 4)};
    p.music = "/music/song.mid";
    p.stack.add() = StackEntry{1, "text"};
    p.stack.add() = StackEntry{1, "bild"};
    SearchElement& search = p.searchBoxes.add();
    search = SearchElement{7, 8, 9, 10, "Suchen", kFalse, spareBytes<6>(seed + 3), filledFont(seed + 1), "",
                           filledExt(seed + 5)};
    search.ext.extFont = {};  // search boxes store no font in their spare run
    p.title = "Seitentitel";
    p.description = "Beschreibung";
    return p;
}

AlbumRecord filledAlbum() {
    AlbumRecord a;
    a.title = "Reise";
    for (int i = 1; i <= 3; ++i) a.pages.add() = PageEntry{txt("Seite", i), txt("Seite", i) + ".apg", "/alben/", static_cast<std::int16_t>(i)};
    a.pageCount = 3;
    a.modified = kTrue;
    a.directory = "/alben/";
    a.fileName = "Reise.apr";
    a.style = AlbumStyle{"s1", "s2", filledFont(1), filledFont(2), 77, kTrue, filledFont(3), filledFont(4),
                         filledFont(5)};
    a.pageDefaults = filledPage(1);
    a.coverDefaults = filledPage(2);
    a.relativeOnlyUnrelated = 1;
    a.relativePath = "/alben/web/";
    a.indexThumbWidth = 101;
    a.indexThumbHeight = 102;
    a.indexColumns = 6;
    a.htmlDirectory = "/alben/html/";
    a.insertHeight = 301;
    a.insertWidth = 501;
    a.insertOriginalSize = -1;
    a.insertGapX = 10;
    a.insertGapY = 11;
    a.insertRows = 4;
    a.insertWrapAsView = 0;
    a.insertNameBelow = 1;
    a.insertInRows = kTrue;
    a.insertToMaxWidth = kTrue;
    a.insertMaxWidth = 801;
    a.loadReduced = 0;
    a.htmlReduce = 0;
    a.fullViewNewWindow = kTrue;
    a.keepAspect = 0;
    a.linkToReduced = kTrue;
    a.htmlJpegQuality = 91;
    a.mailJpegQuality = 66;
    a.openDefaultMail = kTrue;
    a.indexJpegQuality = 92;
    a.mailIgnoreEndings = "mp3;avi";
    a.mailIgnoreSize = 1024;
    a.spareText1 = "spare one";
    a.spareText2 = "spare two";
    a.mailDirectory = "/mail/";
    a.menuColor1 = 1;
    a.menuColor2 = 2;
    a.menuColor3 = 3;
    for (int i = 0; i < 4; ++i) a.menuOpenFlags.add() = static_cast<std::int16_t>(i % 2 ? -1 : 0);
    return a;
}

OptionsRecord filledOptions() {
    OptionsRecord o;
    o.optionsSpare = -1;
    o.explorerSpare = spareBytes<8>(1);
    o.scrollSmallStep = 201;
    o.scrollLargeStep = 601;
    o.lastAlbumDirectory = "/alben/";
    o.pictureDirectory = "/bilder/";
    o.liveMove = kTrue;
    o.startFlagA = 1;
    o.startFlagB = kTrue;
    o.backgroundCopy = kTrue;
    o.buttonCopy = 1;
    o.memoryAtStart = kTrue;
    o.noStartWindow = kTrue;
    o.spareShort = -3;
    o.explorerColumns.resize(20);
    for (int i = 1; i <= 20; ++i) o.explorerColumns[i] = static_cast<std::int16_t>(i * 10);
    o.spareShorts.add() = 5;
    o.explorerLong1 = 11;
    o.explorerLong2 = 12;
    o.explorerLayout = 3;
    o.explorerView = 2;
    o.gridWidth = 8;
    o.gridHeight = 9;
    o.spareLong = 13;
    o.spareLongs1.add() = 14;
    o.spareLongs2.resetToDummy();
    o.explorerTexts = {"a", "b", "c"};
    o.explorerStartMode = "normal";
    o.spareText = "spare";
    o.lastAlbumPath = "/alben/Reise.apr";
    o.language = "englisch";
    o.spareTexts1.add() = "x";
    o.spareTexts2.add() = "y";
    o.font = filledFont(9);
    o.gridUse = kTrue;
    o.gridShow = 1;
    return o;
}

}  // namespace brindle::test
