#include "properties/panorama_properties_model.h"

#include <gtest/gtest.h>

#include "album/page_file.h"
#include "editor/page_document.h"
#include "support/session_fixture.h"

namespace brindle::properties {
namespace {

using brindle::test::ScriptedPrompter;

PanoramaElement twoPictureElement() {
    PanoramaElement e;
    e.top = 10;
    e.left = 20;
    e.width = 480;
    e.height = 220;
    e.hotspotCount = 1;
    e.hotspots[0].urlName = "/bilder/rund.jpg";
    e.hotspots[0].alternative = "rund.gif";
    e.hotspots[0].zoomStart = "Full";
    e.hotspots[0].xStart = 1200;
    e.hotspots[0].x1[0] = 1700;
    e.hotspots[0].x2[0] = 2000;
    e.hotspots[0].y1[0] = 150;
    e.hotspots[0].y2[0] = 350;
    e.hotspots[0].target[0] = 1;
    e.hotspots[0].values = {7, 8, 9, 10};  // carried through untouched
    e.hotspots[1].urlName = "/bilder/berg.jpg";
    e.hotspots[1].zoomStart = "100";
    e.hotspots[1].ext.extText[4] = "fremd";
    return e;
}

TEST(PanoramaModel, OpenAndOkWithoutChangesGivesTheSameElement) {
    const PanoramaElement e = twoPictureElement();
    const PanoramaModel m = PanoramaModel::fromElement(e);
    ASSERT_EQ(m.count(), 2);
    EXPECT_EQ(m.index(), 0);
    EXPECT_EQ(m.picture(1).urlName, "/bilder/berg.jpg");
    HotspotBox h = m.hotspot(1);
    EXPECT_EQ(h.rect, (PixelRect{1700, 2000, 150, 350}));
    EXPECT_EQ(h.target, 1);
    PanoramaElement back = e;
    m.applyTo(back);
    EXPECT_EQ(back, e);

    // An element just drawn has no pictures; one with only a first picture has one.
    EXPECT_EQ(PanoramaModel::fromElement(PanoramaElement{}).count(), 0);
    PanoramaElement one;
    one.hotspots[0].urlName = "a.jpg";
    EXPECT_EQ(PanoramaModel::fromElement(one).count(), 1);
}

TEST(PanoramaModel, EveryControlReachesItsFieldOnOk) {
    PanoramaModel m = PanoramaModel::fromElement(twoPictureElement());
    ASSERT_TRUE(m.addPicture("/bilder/see.jpg"));
    ASSERT_EQ(m.index(), 2);
    m.select(1);
    m.setHotspotRect(3, {10, 60, 20, 80});
    m.setHotspotTarget(3, 2);
    m.setStartView({150.4, 40.6, 1.0});  // This view at 100 %
    m.setNextPicture(12, 0);
    m.setWraps(true);
    m.setStartPicture(1);
    m.select(2);
    m.setZoom("max");
    m.current().alternative = "see.gif";

    PanoramaElement e = twoPictureElement();
    m.applyTo(e);
    EXPECT_EQ(e.hotspotCount, 2);
    EXPECT_EQ(e.currentHotspot, 1);
    const PanoHotspot& b = e.hotspots[1];
    EXPECT_EQ(b.x1[2], 10);
    EXPECT_EQ(b.x2[2], 60);
    EXPECT_EQ(b.y1[2], 20);
    EXPECT_EQ(b.y2[2], 80);
    EXPECT_EQ(b.target[2], 2);
    ASSERT_EQ(b.ext.extTexts1.upper(), 9);
    EXPECT_EQ(b.ext.extTexts1[3], "/bilder/see.jpg");
    EXPECT_EQ(b.xStart, 150);
    EXPECT_EQ(b.yStart, -41);  // upwards, as the viewer reads it with its sign turned
    EXPECT_EQ(b.zoomStart, "100");
    EXPECT_EQ(b.nextTime, 12);
    EXPECT_EQ(b.values[0], 12);
    EXPECT_EQ(b.values[1], 0);
    EXPECT_EQ(b.ext.extText[0], "/bilder/rund.jpg");
    EXPECT_EQ(b.ext.extLong[0], -1);
    EXPECT_EQ(b.ext.extText[4], "fremd");
    EXPECT_EQ(e.hotspots[2].urlName, "/bilder/see.jpg");
    EXPECT_EQ(e.hotspots[2].zoomStart, "Max");
    EXPECT_EQ(e.hotspots[2].alternative, "see.gif");
    EXPECT_EQ(e.hotspots[3], PanoHotspot{});
    // The first picture is as it was.
    EXPECT_EQ(e.hotspots[0], twoPictureElement().hotspots[0]);
}

TEST(PanoramaModel, RemovingAPictureMovesTargetsAndFollowsNames) {
    PanoramaModel m = PanoramaModel::fromElement(twoPictureElement());
    m.addPicture("/bilder/see.jpg");
    m.select(0);
    m.setHotspotTarget(2, 2);  // to the lake, by name
    m.select(1);
    m.removeCurrent();  // the mountain goes
    ASSERT_EQ(m.count(), 2);
    EXPECT_EQ(m.index(), 1);
    m.select(0);
    EXPECT_EQ(m.hotspot(2).target, 1);  // the lake moved up
    EXPECT_EQ(m.hotspot(1).target, 0);  // led to the removed picture
    PanoramaElement e;
    m.applyTo(e);
    EXPECT_EQ(e.hotspotCount, 1);
    EXPECT_EQ(e.hotspots[0].target[1], 1);
    EXPECT_EQ(e.hotspots[1].urlName, "/bilder/see.jpg");
    EXPECT_EQ(e.hotspots[2], PanoHotspot{});
}

TEST(PanoramaModel, TheSetHoldsAtMostTwentyOnePictures) {
    PanoramaModel m;
    std::vector<std::string> files;
    for (int i = 1; i <= 23; ++i) files.push_back("/b/" + std::to_string(i) + ".jpg");
    ScriptedPrompter prompter;
    EXPECT_EQ(addPanoramaPictures(m, files, prompter, Language::German, {}), 21);
    EXPECT_EQ(m.count(), 21);
    EXPECT_EQ(m.picture(20).urlName, "/b/21.jpg");
    EXPECT_FALSE(m.addPicture("/b/22.jpg"));
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0], "message|Panorama|48|Ein Panorama zeigt höchstens 21 Bilder.");
    PanoramaElement e;
    m.applyTo(e);
    EXPECT_EQ(e.hotspotCount, 20);
    EXPECT_EQ(e.hotspots[20].urlName, "/b/21.jpg");
}

TEST(PanoramaModel, UnsupportedTypesAreAskedAboutAndTurnedIntoJpeg) {
    PanoramaModel m;
    ScriptedPrompter prompter;
    prompter.answers = {kYes, kNo, kYesToAll};
    std::vector<std::string> converted;
    auto convert = [&converted](const std::string& from, const std::string& to) {
        converted.push_back(from + ">" + to);
        return true;
    };
    const std::vector<std::string> files = {"/b/a.PNG", "/b/b.ico", "/b/c.jpg", "/b/d.wmf", "/b/e.emf"};
    EXPECT_EQ(addPanoramaPictures(m, files, prompter, Language::German, convert), 5);
    const std::string q =
        "yesnoall|Panorama|Der Dateityp wird im Panorama Steuerelement nicht unterstützt! Soll die Datei ins JPEG "
        "Format umgewandelt werden?";
    EXPECT_EQ(prompter.asked, (std::vector<std::string>{q, q, q}));  // "ja alle" answers the last
    EXPECT_EQ(converted, (std::vector<std::string>{"/b/a.PNG>/b/a.jpg", "/b/d.wmf>/b/d.jpg", "/b/e.emf>/b/e.jpg"}));
    EXPECT_EQ(m.picture(0).urlName, "/b/a.jpg");
    EXPECT_EQ(m.picture(1).urlName, "/b/b.ico");
    EXPECT_EQ(m.picture(2).urlName, "/b/c.jpg");
    EXPECT_EQ(m.picture(4).urlName, "/b/e.jpg");
}

TEST(PanoramaViewMath, DraggedRectanglesArePicturePixels) {
    // View at picture (100, 50), two box pixels per picture pixel.
    const ViewTransform v{100, 50, 2};
    // Drag from (10, 20) to (70, 5): x 105..135, y 52.5..60 -> 53 (half away from zero).
    EXPECT_EQ(hotspotFromDrag(v, 10, 20, 70, 5, 1000, 400), (PixelRect{105, 135, 53, 60}));
    // Backwards and outside the picture: kept inside 0..width, 0..height.
    EXPECT_EQ(hotspotFromDrag(v, 2000, 900, -400, -200, 1000, 400), (PixelRect{0, 1000, 0, 400}));
    // Half scale: box (40, 30) is picture (100 + 80, 50 + 60).
    EXPECT_EQ(hotspotFromDrag({100, 50, 0.5}, 0, 0, 40, 30, 1000, 400), (PixelRect{100, 180, 50, 110}));
}

TEST(PanoramaViewMath, ZoomLimitsAndCheckZoom) {
    // A 3200 x 600 panorama in a 480 x 240 box goes round and fills the height.
    ViewLimits l = viewLimits(480, 240, 3200, 600);
    EXPECT_TRUE(l.wrap);
    EXPECT_DOUBLE_EQ(l.minScale, 0.4);
    EXPECT_DOUBLE_EQ(l.cover, 0.4);
    EXPECT_DOUBLE_EQ(l.maxScale, 4.0);
    EXPECT_DOUBLE_EQ(startScale("Full", l), 0.4);
    EXPECT_DOUBLE_EQ(startScale("50", l), 0.5);
    EXPECT_DOUBLE_EQ(startScale("Max", l), 4.0);
    EXPECT_DOUBLE_EQ(startScale("10", l), 0.4);  // below the least scale
    // An 800 x 600 photo in the same box: contained at 0.4, covered at 0.6.
    l = viewLimits(480, 240, 800, 600);
    EXPECT_FALSE(l.wrap);
    EXPECT_DOUBLE_EQ(l.minScale, 0.4);
    EXPECT_DOUBLE_EQ(l.cover, 0.6);
    EXPECT_DOUBLE_EQ(startScale("min", l), 0.4);

    EXPECT_EQ(checkZoom("full"), "Full");
    EXPECT_EQ(checkZoom("MIN"), "Min");
    EXPECT_EQ(checkZoom("Max"), "Max");
    EXPECT_EQ(checkZoom("120"), "100");
    EXPECT_EQ(checkZoom("150"), "200");
    EXPECT_EQ(checkZoom("1,5"), "50");
    EXPECT_EQ(checkZoom("abc"), "Full");
    EXPECT_EQ(checkZoom(74.9), "50");
    EXPECT_EQ(checkZoom(75.0), "100");

    // Zooming keeps the picture point under the pointer.
    ViewTransform v{100, 50, 1};
    zoomAt(v, 2, 40, 20, viewLimits(480, 240, 3200, 600));
    EXPECT_DOUBLE_EQ(v.scale, 2);
    EXPECT_DOUBLE_EQ(v.vx, 120);
    EXPECT_DOUBLE_EQ(v.vy, 60);
}

// OK through the page document: one "ändern" step; Cancel leaves the file as it was.
class PanoramaOnPage : public brindle::test::SessionTest {};

TEST_F(PanoramaOnPage, OkIsOneUndoStepAndCancelLeavesTheFileByteIdentical) {
    start();
    session->AlbumNeu();
    editor::PageDocument doc(*session, 1);
    const editor::ElementRef ref = doc.createPanorama({20, 10, 480, 220});
    session->page(1).panoramas[ref.index] = [&] {
        PanoramaElement e = twoPictureElement();
        e.ext = session->page(1).panoramas[ref.index].ext;
        return e;
    }();
    ASSERT_TRUE(writePageFile(path("p.apg"), session->page(1)).ok());
    const std::string before = readBytes("p.apg");

    // Cancel: the model is dropped, nothing is written to the element.
    PanoramaModel cancelled = PanoramaModel::fromElement(session->page(1).panoramas[ref.index]);
    cancelled.setZoom("200");
    cancelled.removeCurrent();
    ASSERT_TRUE(writePageFile(path("p.apg"), session->page(1)).ok());
    EXPECT_EQ(readBytes("p.apg"), before);

    const int steps = doc.undoRing().pos;
    PanoramaModel m = PanoramaModel::fromElement(session->page(1).panoramas[ref.index]);
    m.setZoom("200");
    doc.changeElement(ref, [&] { m.applyTo(session->page(1).panoramas[ref.index]); });
    EXPECT_EQ(doc.undoRing().pos, steps + 1);
    EXPECT_EQ(doc.undoRing().aktion[static_cast<std::size_t>(steps + 1)], "ändern");
    EXPECT_EQ(session->page(1).panoramas[ref.index].hotspots[0].zoomStart, "200");
    doc.MachUndo();
    EXPECT_EQ(session->page(1).panoramas[ref.index].hotspots[0].zoomStart, "Full");
}

}  // namespace
}  // namespace brindle::properties
