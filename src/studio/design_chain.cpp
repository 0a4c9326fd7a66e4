// The step runner. One table names every step and the function that runs
// it; the test view and the batch differ only inside a few of them.
#include "studio/design_chain.h"

#include <array>
#include <charconv>
#include <mutex>
#include <thread>

#include "image/filter_bank.h"
#include "image/frame_plane.h"
#include "image/picture_holder.h"
#include "image/picture_io.h"
#include "image/picture_limits.h"
#include "image/pointwise_rows.h"
#include "image/rounding.h"
#include "studio/step_tokens.h"

namespace brindle::studio {
namespace {

constexpr int kArgumentBound = 1000000;

// A parsed line: parts[0] is the name, parts[1..] the arguments as the
// shared splitter gives them (empty ones dropped). `argumentText` is the
// text between the brackets, for the one argument that may hold blanks
// and commas: a frame's background file.
struct StepLine {
    std::vector<std::string> parts;
    std::string_view argumentText;
    // Numbers far beyond any control's range are held at a bound, so that
    // the effects' integer sums cannot overflow on a hostile list.
    int arg(std::size_t i) const {
        const int v = stepInt(parts, i);
        return v > kArgumentBound ? kArgumentBound : (v < -kArgumentBound ? -kArgumentBound : v);
    }
    // A colour 0x00BBGGRR; higher bits are no part of it.
    std::uint32_t colour(std::size_t i) const {
        return static_cast<std::uint32_t>(stepInt(parts, i)) & 0xFFFFFFu;
    }
};

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string_view trim(std::string_view s) {
    while (!s.empty() && isBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back())) s.remove_suffix(1);
    return s;
}

using StepRun = bool (*)(cDIBSection&, const StepLine&, const StepEnv&);

struct StepKind {
    std::string_view name;
    StepRun run;
};

bool isTestView(const StepEnv& env) { return env.mode == ChainMode::TestView; }

// "True" and "Wahr" as older lists may carry them.
bool isTrueWord(const StepLine& s, std::size_t i) {
    if (i >= s.parts.size()) return false;
    const std::string& t = s.parts[i];
    return t == "True" || t == "true" || t == "Wahr" || t == "wahr";
}

bool stepFlag(const StepLine& s, std::size_t i) { return isTrueWord(s, i) || s.arg(i) != 0; }

bool isExactlyOne(const StepLine& s, std::size_t i) {
    if (i >= s.parts.size()) return false;
    const std::string& t = s.parts[i];
    const char* begin = t.data() + (!t.empty() && t[0] == '+' ? 1 : 0);
    double value = 0;
    const auto [end, ec] = std::from_chars(begin, t.data() + t.size(), value);
    return ec == std::errc() && end != begin && value == 1.0;
}

// Results larger than any picture of the program are refused, so that a
// hostile list cannot ask for gigabytes.
bool sizeAllowed(long long width, long long height) {
    return width > 0 && height > 0 && width * height <= kMaxPicturePixels;
}

// The filter bank keeps a second caller out instead of waiting; the chain
// waits its turn so that a batch on two cores gives the same pictures.
bool runBlur(cDIBSection& dib, const StepLine&, const StepEnv& env) {
    static std::mutex turn;
    std::lock_guard<std::mutex> guard(turn);
    for (int attempt = 0; attempt < 1000; ++attempt) {
        if (filterBitmap(kFilterBlur, dib, 0, env.progress)) return true;
        std::this_thread::yield();
    }
    return false;
}

bool runBrightness(cDIBSection& dib, const StepLine& s, const StepEnv& env) {
    if (!isTestView(env) && stepFlag(s, 2))
        dib.effectBrightnessBits(s.arg(1), env.progress);
    else
        dib.effectBrightnessBitsFast(s.arg(1), env.progress);
    return true;
}

bool runSharpen(cDIBSection& dib, const StepLine& s, const StepEnv& env) {
    if (isTestView(env))
        dib.effectSchärfenBits(env.progress);
    else
        dib.effectSchärfen2(s.arg(1), env.progress);
    return true;
}

// Option 0 sizes in pixels, any other value in percent of the picture.
bool sizeOfStep(const cDIBSection& dib, const StepLine& s, int& width, int& height) {
    long long w = s.arg(1), h = s.arg(2);
    if (stepFlag(s, 5)) {
        w = roundEven(dib.Width() * static_cast<double>(s.arg(3)) / 100.0);
        h = roundEven(dib.Height() * static_cast<double>(s.arg(4)) / 100.0);
    }
    if (!sizeAllowed(w, h)) return false;
    width = static_cast<int>(w);
    height = static_cast<int>(h);
    return true;
}

bool runSize(cDIBSection& dib, const StepLine& s, const StepEnv& env) {
    int w = 0, h = 0;
    if (isTestView(env) || !sizeOfStep(dib, s, w, h)) return false;
    dib.effectGröße(w, h, env.progress);
    return true;
}

bool runTurn(cDIBSection& dib, const StepLine& s, const StepEnv& env) {
    const int direction = s.arg(1);
    if (direction != 90 && direction != -90) return false;
    cDIBSection turned;
    dib.effectBildDrehen90power(direction, turned, env.progress);
    if (turned.empty()) return false;
    turned.setExif(dib.sharedExif());
    dib = std::move(turned);
    return true;
}

// The picture is squeezed to half its height in place, the rows left over
// below are cut, and the waves run on the half.
bool runWave(cDIBSection& dib, const StepLine& s, const StepEnv& env) {
    if (stepFlag(s, 2)) {
        const int w = dib.Width(), h = dib.Height();
        const int half = roundEven((h + 1) / 2.0);
        dib.StretchPicture(dib.hdc(), 0, 0, w, half, 0, 0, w, h);
        dib.effectCut(0, 0, 0, half);
    }
    dib.effectWaves(s.arg(1), 0, env.progress);
    return true;
}

// The test view takes the argument as a flag; the batch compares it with 1.
bool runMirror(cDIBSection& dib, const StepLine& s, const StepEnv& env) {
    const bool horizontal = isTestView(env) ? stepFlag(s, 1) : isTrueWord(s, 1) || isExactlyOne(s, 1);
    const int w = dib.Width(), h = dib.Height();
    if (horizontal)
        dib.StretchPicture(dib.hdc(), 0, 0, w, h, w, 0, -w, h);
    else
        dib.StretchPicture(dib.hdc(), 0, 0, w, h, 0, h, w, -h);
    if (env.progress) env.progress->store(100);
    return true;
}

bool runTile(cDIBSection& dib, const StepLine& s, const StepEnv& env) {
    if (s.arg(1) == 0 && s.arg(2) == 0 && !sizeAllowed(2LL * dib.Width(), 2LL * dib.Height()))
        return false;
    dib.effectKachel(s.arg(1), s.arg(2), env.progress);
    return true;
}

// The fifth argument of a frame: everything after the fourth comma up to
// the closing bracket, blanks and commas included.
std::string frameFile(std::string_view arguments) {
    std::size_t at = 0;
    for (int comma = 0; comma < 4; ++comma) {
        at = arguments.find(',', at);
        if (at == std::string_view::npos) return {};
        ++at;
    }
    return std::string(trim(arguments.substr(at)));
}

bool loadFrameBackground(cDIBSection& back, const std::string& file, int w, int h,
                         const StepEnv& env) {
    PictureHolder holder;
    int width = w, height = h;
    if (!Loadpicture(holder, file, width, height, 0, env.image)) return false;
    if (holder.picture && holder.picture.Handle()->Width() == w &&
        holder.picture.Handle()->Height() == h)
        return back.PictureFromHandle(holder.picture.Handle());
    return back.CopyPicture(holder) && back.Width() == w && back.Height() == h;
}

// The frame is drawn on a colour plane or a background picture of the
// same size, and the picture is stretched into it inside the frame. On a
// colour the shrink is done in the picture's own buffer.
bool runFrame(cDIBSection& dib, const StepLine& s, const StepEnv& env) {
    const int w = dib.Width(), h = dib.Height(), d = s.arg(3);
    const std::string file = frameFile(s.argumentText);
    cDIBSection back;
    const bool loaded = !file.empty() && file != ")" && loadFrameBackground(back, file, w, h, env);
    if (!loaded) {
        if (frameOnColourInPlace(dib, s.colour(4), s.arg(1), s.arg(2), d, env.progress)) return true;
        return frameOnColourPlane(dib, s.colour(4), s.arg(1), s.arg(2), d, env.progress);
    }
    back.effectRahmen(s.arg(1), s.arg(2), d, env.progress);
    back.StretchLoadPicture(dib.hdc(), d, d, w - 2 * d, h - 2 * d, 0, 0, w, h);
    back.setExif(dib.sharedExif());
    dib = std::move(back);
    return true;
}

// A frame on a colour and a size step that shrinks right after it: only
// the pixels the shrink keeps are framed.
bool runFrameAndShrink(cDIBSection& dib, const StepLine& frame, const StepLine& size,
                       const StepEnv& env) {
    const std::string file = frameFile(frame.argumentText);
    int w = 0, h = 0;
    if ((!file.empty() && file != ")") || isTestView(env) || !sizeOfStep(dib, size, w, h))
        return false;
    return frameOnColourAndShrink(dib, frame.colour(4), frame.arg(1), frame.arg(2), frame.arg(3), w,
                                  h, env.progress);
}

bool runTint(cDIBSection& dib, const StepLine& s, const StepEnv& env) {
    const Rgb c = splitColour(s.colour(3));
    dib.effectEinfärben(c.red, c.green, c.blue, s.arg(1), s.arg(2), env.progress);
    return true;
}

template <int Preset>
bool runMetal(cDIBSection& dib, const StepLine&, const StepEnv& env) {
    dib.effectMetallic(Preset, env.progress);
    return true;
}

const std::array<StepKind, 27>& stepKinds() {
    // clang-format off
    static const std::array<StepKind, 27> kinds{{
        {"WeichZ", [](cDIBSection& d, const StepLine& s, const StepEnv& e) { d.effectWeichzeichnen(s.arg(1), e.progress); return true; }},
        {"RedNoise", [](cDIBSection& d, const StepLine& s, const StepEnv& e) { d.EffectReduceNoise(s.arg(1), s.arg(2), s.arg(3), s.arg(4), false, e.progress); return true; }},
        {"Button", [](cDIBSection& d, const StepLine& s, const StepEnv& e) { d.effectButtonize(s.arg(1), s.arg(2), s.arg(3), e.progress); return true; }},
        {"Color", [](cDIBSection& d, const StepLine& s, const StepEnv& e) { d.effectFarbeSaturation(s.arg(1), s.arg(2), e.progress); return true; }},
        {"Blureffect", runBlur},
        {"Zufall", [](cDIBSection& d, const StepLine&, const StepEnv& e) { d.effectRandomiseBits(false, e.progress); return true; }},
        {"Kontrast", [](cDIBSection& d, const StepLine& s, const StepEnv& e) { d.effectKontrastBits(s.arg(1), e.progress); return true; }},
        {"Schwarz/Weiss", [](cDIBSection& d, const StepLine& s, const StepEnv& e) { d.effectBlackAndWhite(s.arg(1), e.progress); return true; }},
        {"3D Effekt", [](cDIBSection& d, const StepLine& s, const StepEnv& e) { d.effect3D(s.arg(1), e.progress); return true; }},
        {"Frost-Glas", [](cDIBSection& d, const StepLine& s, const StepEnv& e) { d.effectFrostglas(s.arg(1), e.progress); return true; }},
        {"SW-Photo", [](cDIBSection& d, const StepLine&, const StepEnv& e) { d.effectGrayBits(e.progress); return true; }},
        {"Emboss", [](cDIBSection& d, const StepLine&, const StepEnv& e) { d.effectEmbossBits(e.progress); return true; }},
        {"Negativ", [](cDIBSection& d, const StepLine&, const StepEnv& e) { d.effectInvert(e.progress); return true; }},
        {"Helligkeit", runBrightness},
        {"Intensiv", [](cDIBSection& d, const StepLine& s, const StepEnv& e) { d.effectIntensiv(s.arg(1), e.progress); return true; }},
        {"Gamma", [](cDIBSection& d, const StepLine& s, const StepEnv& e) { d.effectGamma(s.arg(1), e.progress); return true; }},
        {"Größe", runSize},
        {"Einfärben", runTint},
        {"Drehen", runTurn},
        {"Wave", runWave},
        {"Spiegeln", runMirror},
        {"Ripple", [](cDIBSection& d, const StepLine& s, const StepEnv& e) { d.effectRippleBits(s.arg(1), s.arg(2), e.progress); return true; }},
        {"Neon", [](cDIBSection& d, const StepLine& s, const StepEnv& e) { d.effectNeon(s.arg(1), s.arg(2), false, e.progress); return true; }},
        {"Schärfen", runSharpen},
        {"Kachel", runTile},
        {"Rahmen", runFrame},
        {"Gold", runMetal<1>},
    }};
    // clang-format on
    return kinds;
}

const StepKind* findKind(std::string_view name) {
    for (const StepKind& k : stepKinds())
        if (k.name == name) return &k;
    if (name == "Eis") {
        static const StepKind ice{"Eis", runMetal<2>};
        return &ice;
    }
    if (name == "Stahl") {
        static const StepKind steel{"Stahl", runMetal<3>};
        return &steel;
    }
    return nullptr;
}

// Steps that change each pixel on its own can share one pass over the rows.
using StepJoin = void (*)(PointwiseRows&, const StepLine&, const StepEnv&);

void joinContrast(PointwiseRows& rows, const StepLine& s, const StepEnv&) { rows.contrast(s.arg(1)); }

void joinBrightness(PointwiseRows& rows, const StepLine& s, const StepEnv& env) {
    if (!isTestView(env) && stepFlag(s, 2))
        rows.brightness(s.arg(1));
    else
        rows.brightnessFlat(s.arg(1));
}

void joinColour(PointwiseRows& rows, const StepLine& s, const StepEnv&) {
    rows.saturation(s.arg(1), s.arg(2));
}

StepJoin joinFor(std::string_view name) {
    if (name == "Kontrast") return joinContrast;
    if (name == "Helligkeit") return joinBrightness;
    if (name == "Color") return joinColour;
    return nullptr;
}

// The name is the text before the bracket, so that names holding a blank
// ("3D Effekt") are found; a line that does not name a step that way is
// taken by its first part, as the splitter gives it.
const StepKind* parseLine(std::string_view line, StepLine& out) {
    const std::size_t open = line.find('(');
    const std::string_view name = trim(line.substr(0, open));
    if (const StepKind* kind = findKind(name)) {
        std::string_view args;
        if (open != std::string_view::npos) {
            args = line.substr(open + 1);
            const std::size_t close = args.rfind(')');
            if (close != std::string_view::npos) args = args.substr(0, close);
        }
        out.argumentText = args;
        out.parts = splitStepLine(args);
        out.parts.insert(out.parts.begin(), std::string(name));
        return kind;
    }
    out.parts = splitStepLine(line);
    if (out.parts.empty()) return nullptr;
    out.argumentText = {};
    return findKind(out.parts[0]);
}

}  // namespace

std::string stepName(std::string_view line) {
    StepLine parsed;
    if (const StepKind* kind = parseLine(line, parsed)) return std::string(kind->name);
    return parsed.parts.empty() ? std::string() : parsed.parts[0];
}

bool applyStep(cDIBSection& dib, std::string_view line, const StepEnv& env) {
    if (dib.empty()) return false;
    StepLine parsed;
    const StepKind* kind = parseLine(line, parsed);
    if (!kind) return false;
    return kind->run(dib, parsed, env);
}

std::size_t applySteps(cDIBSection& dib, const std::vector<std::string>& lines, std::size_t from,
                       const StepEnv& env) {
    if (from >= lines.size()) return 0;
    if (from + 1 < lines.size() && !dib.empty()) {
        StepLine frame, size;
        const StepKind* first = parseLine(lines[from], frame);
        const StepKind* second = parseLine(lines[from + 1], size);
        if (first && second && first->run == runFrame && second->run == runSize &&
            runFrameAndShrink(dib, frame, size, env))
            return 2;
    }
    PointwiseRows rows;
    std::size_t count = 0;
    for (; from + count < lines.size(); ++count) {
        StepLine parsed;
        const StepKind* kind = parseLine(lines[from + count], parsed);
        const StepJoin join = kind ? joinFor(kind->name) : nullptr;
        if (!join) break;
        join(rows, parsed, env);
    }
    if (count >= 1 && !dib.empty() && from + count < lines.size() && !isTestView(env)) {
        // A sharpening next takes each row from the steps just before it reads
        // the row, while the row is still in the cache.
        StepLine parsed;
        const StepKind* kind = parseLine(lines[from + count], parsed);
        if (kind && kind->run == runSharpen) {
            PointwiseFeed feed(rows, dib);
            dib.effectSchärfen2(parsed.arg(1), env.progress, &feed);
            return count + 1;
        }
    }
    if (count < 2 || dib.empty()) {
        applyStep(dib, lines[from], env);
        return 1;
    }
    rows.run(dib, env.progress);
    return count;
}

void applyChain(cDIBSection& dib, const std::vector<std::string>& lines, const StepEnv& env) {
    for (std::size_t i = 0; i < lines.size();) i += applySteps(dib, lines, i, env);
}

}  // namespace brindle::studio
