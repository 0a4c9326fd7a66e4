// The pixel work of the picture animations, as plain functions on QImage
// (Format_RGB32) so that each step can be checked. They follow the HTML
// album's runtime (resources/bseffects.js) number for number, so a page
// plays alike in the editor and in the browser.
#pragma once

#include <QImage>
#include <QLineF>
#include <QPointF>
#include <cstdint>
#include <string>
#include <vector>

namespace brindle::editor::effects {

// The tokens of an animation or frame spec: split at ",", "(" and ")",
// padded with "None" so that at least six exist.
std::vector<std::string> specTokens(const std::string& spec);
// A token's number, or `fallback` when it is none.
double tokenNumber(const std::string& token, double fallback);

// The area inside the picture's frame, where an effect plays.
struct Inner {
    int x = 0, y = 0, w = 0, h = 0;
};
Inner innerBox(int width, int height, double frame);

// The picture at `size` with its frame ring; the inside is filled as the
// web picture of the animation is ("Lake": the upper part of the picture
// above the water line, the frontier in percent of the picture's height).
QImage boxedPicture(const QImage& picture, QSize size, int frame, std::uint32_t frameColor, bool lake,
                    double frontier);

// ---- lake: the picture above the water line mirrored in moving water.
double lakePhase(double ms, double speed);
struct LakeRow {
    int source = 0;      // picture row shown in water row `d`
    double shift = 0.0;  // sideways move of that row
};
// Water row d (0 at the water line) of `depth` rows below `line`.
LakeRow lakeRow(int d, int depth, int line, int top, double phase);
void renderLake(QImage& out, const QImage& boxed, Inner r, double ms, double speed);

// ---- rain and snow over the picture.
// The runtime's random numbers: a fixed seed, so a page always shows the same weather.
class SeededRandom {
public:
    double next();

private:
    std::uint32_t seed_ = 12345;
};
struct Drop {
    double x = 0, y = 0, size = 0, v = 0, sway = 0;
};
// The count an applet gets: the `anzahl` parameter, else one drop per 250
// (rain) or flake per 400 (snow) pixels; 1 to 5000.
int dropCount(double anzahl, bool snow, Inner r);
// `anzahl` as the album writes it for a box: frame token 2 x area / 1000 / d
// (d 1 for "Snow", 11 otherwise).
double appletAnzahl(const std::string& frameSpec, const std::string& kind, int width, int height);
std::vector<Drop> makeDrops(int count, bool snow, double speed);
double flakeRadius(const Drop& d);
QPointF flakeAt(const Drop& d, double seconds, Inner r);
QLineF streakAt(const Drop& d, double seconds, Inner r);
void renderPrecipitation(QImage& out, const QImage& boxed, const std::vector<Drop>& drops, bool snow, double ms,
                         Inner r);

// ---- a picture strip scrolling sideways without end.
// Pixels per second for a pause of `speed` x 10 ms between steps of `anzahl` pixels.
double panoVelocity(double speed, double anzahl);
double panoOffset(double velocity, double ms, double stripWidth);
void renderPanoStrip(QImage& out, const QImage& boxed, const QImage& strip, Inner r, double ms, double velocity);

// ---- under water: the rows sway sideways in waves.
struct Underwater {
    double delay = 3;    // per frame, in 40 ms
    double frames = 5;   // frames of one wave period
    double height = 4;   // pixels a row moves at most
    double width = 4;    // wave length, in 10 pixels
};
int underwaterShift(int y, double ms, const Underwater& u);
void renderUnderwater(QImage& out, const QImage& boxed, Inner r, double ms, const Underwater& u);

}  // namespace brindle::editor::effects
