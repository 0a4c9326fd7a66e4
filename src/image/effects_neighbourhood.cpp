// Effects that read neighbouring pixels or remap rows and columns.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <mutex>
#include <vector>

#include "image/dib_section.h"
#include "image/effects_internal.h"
#include "image/rounding.h"
#include "image/row_feed.h"
#include "image/sharpen_bands.h"
#include "image/sharpen_wavefront.h"
#include "image/sharpen_wavefront_512.h"
#include "image/sharpen_wavefront_wide.h"

namespace brindle {

using effects::rnd;

void cDIBSection::effectEmbossBits(ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    const int last = Width() * 3 - 6;
    for (int y = 0; y <= Height() - 2; ++y) {
        std::uint8_t* p = rowBits(y);
        const std::uint8_t* above = rowBits(y + 1);
        for (int x = 3; x <= last; ++x) {
            const int v = std::abs(p[x] - above[x + 3] + 128);
            p[x] = static_cast<std::uint8_t>(v > 255 ? 255 : v);
        }
        rp.step(y, Height());
    }
    rp.done();
}

// Each byte moves away from its left neighbour, which has already been
// sharpened: the one-tap filter of the test view.
void cDIBSection::effectSchärfenBits(ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    const int last = Width() * 3 - 6;
    for (int y = 0; y < Height(); ++y) {
        std::uint8_t* p = rowBits(y);
        for (int x = 3; x <= last; ++x) {
            // c + (c - left) / 2 = (3c - left) / 2, rounded half to even.
            const int twice = 3 * p[x] - p[x - 3];
            const int half = twice >> 1;
            p[x] = clampByte(half + ((twice & 1) & (half & 1)));
        }
        rp.step(y, Height());
    }
    rp.done();
}

namespace {

// The sharpening of one row in two passes. All but the left neighbour,
// which has just been sharpened itself, are known before the row starts:
// their part goes into `partial` in a loop the compiler vectorises; the
// second pass adds the left neighbour and looks the quotient up in a table
// made by the formula, so no pixel pays for a division.
struct SharpenTable {
    std::vector<std::uint8_t> out;  // out[n - low] = clamp(n / divisor)
    int low = 0;
    bool build(int centre, int divisor) {
        const long long lo = std::min(0LL, 255LL * centre) - 4080;
        const long long hi = std::max(0LL, 255LL * centre);
        if (hi - lo + 1 > (1 << 20)) return false;
        low = static_cast<int>(lo);
        out.resize(static_cast<std::size_t>(hi - lo + 1));
        for (long long n = lo; n <= hi; ++n) out[n - lo] = clampByte(static_cast<int>(n / divisor));
        return true;
    }
};

void sharpenRow(std::uint8_t* p, const std::uint8_t* lo, const std::uint8_t* hi, int last,
                int centre, const SharpenTable& table, std::vector<int>& partial) {
    int* a = partial.data();
    for (int c = 6; c <= last + 2; ++c)
        a[c] = p[c] * centre -
               2 * (lo[c - 3] + lo[c] + lo[c + 3] + p[c + 3] + hi[c - 3] + hi[c] + hi[c + 3]) -
               table.low;
    const std::uint8_t* t = table.out.data();
    int b = p[3], g = p[4], r = p[5];
    for (int x = 6; x <= last; x += 3) {
        b = t[a[x] - 2 * b];
        g = t[a[x + 1] - 2 * g];
        r = t[a[x + 2] - 2 * r];
        p[x] = static_cast<std::uint8_t>(b);
        p[x + 1] = static_cast<std::uint8_t>(g);
        p[x + 2] = static_cast<std::uint8_t>(r);
    }
}

}  // namespace

namespace {

// Asks the feed for rows only when there is one.
struct FeedRows {
    RowFeed* feed;
    void upTo(int row) const {
        if (feed) feed->upTo(row);
    }
};

// Bands of `kRows` rows while they fit; a band reads from the row below its
// first to the row above its last.
template <int kRows, class Wave>
void runBands(cDIBSection& d, Wave& wave, int& y, const FeedRows& feed, RowProgress& rp) {
    const int height = d.Height();
    std::uint8_t* rows[kRows + 2];
    for (; y + kRows - 1 <= height - 2; y += kRows) {
        feed.upTo(y + kRows);
        for (int i = 0; i < kRows + 2; ++i) rows[i] = d.rowBits(y - 1 + i);
        wave.band(rows);
        rp.step(y + kRows - 1, height);
    }
}

// Bands of rows: thirty in AVX-512 lanes, sixteen in AVX2 lanes, then eight,
// then one at a time; none wider than `widest`.
void sharpenBands(cDIBSection& d, int strength, const SharpenTable& table, const FeedRows& feed,
                  RowProgress& rp, int widest) {
    const int height = d.Height();
    const int last = d.Width() * 3 - 6;
    const int centre = strength + 24;
    int y = 2;
    using Band512 = effects::SharpenWavefront512;
    using Band16 = effects::SharpenWavefrontWide;
    using Band8 = effects::SharpenWavefront;
    if (widest >= Band512::kRows && Band512::available()) {
        Band512 band;
        if (band.prepare(strength, d.Width())) runBands<Band512::kRows>(d, band, y, feed, rp);
    }
    if (widest >= Band16::kLanes && Band16::available()) {
        Band16 band;
        if (band.prepare(strength, d.Width())) runBands<Band16::kLanes>(d, band, y, feed, rp);
    }
    if (widest >= Band8::kLanes) {
        Band8 band;
        if (band.prepare(strength, d.Width())) runBands<Band8::kLanes>(d, band, y, feed, rp);
    }
    std::vector<int> partial(static_cast<std::size_t>(last) + 3);
    for (; y <= height - 2; ++y) {
        feed.upTo(y + 1);
        sharpenRow(d.rowBits(y), d.rowBits(y - 1), d.rowBits(y + 1), last, centre, table, partial);
        rp.step(y, height);
    }
}

// Strengths no control gives: the formula itself, in 64 bits.
void sharpenPlain(cDIBSection& d, long long centre, long long divisor, RowProgress& rp) {
    const int last = d.Width() * 3 - 6;
    for (int y = 2; y <= d.Height() - 2; ++y) {
        std::uint8_t* p = d.rowBits(y);
        const std::uint8_t* lo = d.rowBits(y - 1);
        const std::uint8_t* hi = d.rowBits(y + 1);
        for (int x = 6; x <= last; x += 3) {
            for (int c = x; c < x + 3; ++c) {
                const long long s = lo[c - 3] + lo[c] + lo[c + 3] + p[c - 3] + p[c + 3] +
                                    hi[c - 3] + hi[c] + hi[c + 3];
                const long long q = (p[c] * centre - 2 * s) / divisor;
                p[c] = static_cast<std::uint8_t>(q < 0 ? 0 : (q > 255 ? 255 : q));
            }
        }
        rp.step(y, d.Height());
    }
}

}  // namespace

namespace {

void sharpenAll(cDIBSection& d, int strength, const FeedRows& rows, RowProgress& rp, int widest) {
    const long long divisor = static_cast<long long>(strength) + 8;
    const long long centre = static_cast<long long>(strength) + 24;
    const int last = d.Width() * 3 - 6;
    SharpenTable table;
    if (divisor != 0 && last >= 6 && table.build(static_cast<int>(centre), static_cast<int>(divisor))) {
        sharpenBands(d, strength, table, rows, rp, widest);
    } else if (divisor != 0) {
        rows.upTo(d.Height() - 1);
        sharpenPlain(d, centre, divisor, rp);
    }
    rows.upTo(d.Height() - 1);
}

}  // namespace

void cDIBSection::effectSchärfen2(int strength, ProgressWord* progress, RowFeed* feed) {
    RowProgress rp(progress_, progress);
    sharpenAll(*this, strength, FeedRows{feed}, rp, effects::kWidestSharpenBand);
    rp.done();
}

void effects::sharpenWithBandsUpTo(cDIBSection& d, int strength, int widest) {
    ProgressWord progress;
    RowProgress rp(progress, nullptr);
    sharpenAll(d, strength, FeedRows{nullptr}, rp, widest);
}

// Five-point mean in place: a pixel already sees its changed left and lower
// neighbours. The strength argument is kept for the callers and not used.
void cDIBSection::effectWeichzeichnen(int /*unused*/, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    const int last = Width() * 3 - 6;
    for (int y = 2; y <= Height() - 2; ++y) {
        std::uint8_t* p = rowBits(y);
        const std::uint8_t* lo = rowBits(y - 1);
        const std::uint8_t* hi = rowBits(y + 1);
        for (int x = 6; x <= last; x += 3)
            for (int c = x; c < x + 3; ++c)
                p[c] = static_cast<std::uint8_t>((p[c] + p[c - 3] + p[c + 3] + hi[c] + lo[c]) / 5);
        rp.step(y, Height());
    }
    rp.done();
}

void cDIBSection::effectFrostglas(int strength, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    const int r = roundEven((Height() + Width() * 3 - 3) / 300.0 + strength - 1);
    const int half = r / 2;
    const int rowBytes = Width() * 3;
    for (int y = 0; y < Height(); ++y) {
        std::uint8_t* p = rowBits(y);
        for (int x = 0; x < rowBytes; x += 3) {
            int dy = roundEven(rnd() * r - half);
            int dx = roundEven(rnd() * r - half) * 3;
            if (x + dx < 0) dx = 0;
            if (x + dx + 2 > rowBytes - 1) dx = 0;
            if (y + dy < 0 || y + dy > Height() - 1) dy = 0;
            const std::uint8_t* s = rowBits(y + dy) + x + dx;
            p[x] = s[0];
            p[x + 1] = s[1];
            p[x + 2] = s[2];
        }
        rp.step(y, Height());
    }
    rp.done();
}

// Each pixel is drawn down its column by a height that grows with its
// brightness, so bright parts stand up from the plane.
void cDIBSection::effect3D(int depth, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    if (depth == 0) return rp.done();
    const double k = Height() / 300.0 / depth;
    for (int y = 1; y < Height(); ++y) {
        const std::uint8_t* p = rowBits(y);
        for (int x = 0; x < Width() * 3; x += 3) {
            int t = roundEven(y - (p[x] + p[x + 1] + p[x + 2]) * k);
            if (t < 1) t = 1;
            for (int row = y - 1; row >= t; --row) {
                std::uint8_t* d = rowBits(row) + x;
                d[0] = p[x];
                d[1] = p[x + 1];
                d[2] = p[x + 2];
            }
        }
        rp.step(y, Height());
    }
    rp.done();
}

void cDIBSection::effectWaves(int phase, int /*unused*/, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    const int h = Height();
    if (h == 0) return rp.done();
    const double p = phase * 6.28318530718 / 12;
    const double band = h / 14.0;
    std::vector<int> map(static_cast<std::size_t>(h));
    for (int i = 0; i < h; ++i) {
        const double s = std::sin(band * (h - i) / (i + 1) + p);
        int m = roundEven(std::floor(band * (i + 28) * s / h) + i);
        map[h - i - 1] = m > h - 1 ? h - 1 : (m < 0 ? 0 : m);
    }
    const std::vector<std::uint8_t> copy = bits_;
    const std::size_t rowBytes = static_cast<std::size_t>(Width()) * 3;
    for (int y = 0; y < h; ++y) {
        std::copy_n(copy.data() + static_cast<std::size_t>(map[y]) * stride(), rowBytes,
                    rowBits(y));
        rp.step(y, h);
    }
    rp.done();
}

void cDIBSection::effectRippleBits(int vertical, int horizontal, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    const int h = Height(), bytes = Width() * 3;
    if (empty()) return rp.done();
    std::vector<int> ys(static_cast<std::size_t>(h)), xs(static_cast<std::size_t>(bytes));
    for (int i = 0; i < h; ++i) {
        const int v = roundEven(vertical * std::sin(i / 10.0) + i);
        ys[i] = v < 0 ? 0 : (v > h - 1 ? h - 1 : v);
    }
    for (int x = 0; x < bytes; x += 3) {
        int v = x + roundEven(std::sin(x / 3.0 / 10.0) * horizontal) * 3;
        v = v < 0 ? 0 : (v > bytes - 3 ? bytes - 3 : v);
        xs[x] = v;
        xs[x + 1] = v + 1;
        xs[x + 2] = v + 2;
    }
    const std::vector<std::uint8_t> copy = bits_;
    for (int y = 0; y < h; ++y) {
        std::uint8_t* d = rowBits(y);
        const std::uint8_t* s = copy.data() + static_cast<std::size_t>(ys[y]) * stride();
        for (int x = 0; x < bytes; ++x) d[x] = s[xs[x]];
        rp.step(y, h);
    }
    rp.done();
}

namespace {

// The mixing table, kept between calls with the same alpha. Entry
// [b x 257 + a] mixes byte a of this picture with byte b of the other.
struct AlphaTable {
    std::mutex lock;
    std::vector<std::uint8_t> entries;
    int alpha = -1;
};

AlphaTable& alphaTable() {
    static AlphaTable table;
    return table;
}

}  // namespace

void cDIBSection::effectAlphaBlending(int alpha, const brindle::Picture& second,
                                      ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    if (alpha < 1) alpha = 50;
    if (alpha >= 100) alpha = 100;
    cDIBSection other;
    if (empty() || !other.CreateFromPicture(second)) return rp.done();
    AlphaTable& t = alphaTable();
    std::lock_guard<std::mutex> guard(t.lock);
    // Entry 25800 mixes 100 with 100 and is never 0 once the table is built.
    if (t.entries.empty() || t.entries[25800] == 0 || t.alpha != alpha) {
        t.entries.assign(257 * 256, 0);
        for (int b = 0; b < 256; ++b)
            for (int a = 0; a < 256; ++a)
                t.entries[b * 257 + a] = roundClamp(((100 - alpha) * b + alpha * a) / 100.0);
        t.alpha = alpha;
    }
    const int rows = std::min(Height(), other.Height());
    const int bytes = std::min(Width(), other.Width()) * 3;
    for (int y = 0; y < rows; ++y) {
        std::uint8_t* a = rowBits(y);
        const std::uint8_t* b = other.rowBits(y);
        for (int x = 0; x < bytes; ++x) a[x] = t.entries[b[x] * 257 + a[x]];
        rp.step(y, rows);
    }
    rp.done();
}

namespace {

// A channel is quiet when it stands far (at least `high`) or close (at most
// `low`) to the value it is compared with.
bool quiet(int difference, int low, int high) {
    const int d = std::abs(difference);
    return d >= high || d <= low;
}

struct Neighbours {
    const std::uint8_t* lo;
    const std::uint8_t* mid;
    const std::uint8_t* hi;
    int x;
    int at(int k, int c) const {  // k = 0..7 around the centre
        static const int dx[8] = {-3, 0, 3, -3, 3, -3, 0, 3};
        const std::uint8_t* row = k < 3 ? lo : (k < 5 ? mid : hi);
        return row[x + dx[k] + c];
    }
    int mean(int c) const {
        int s = 0;
        for (int k = 0; k < 8; ++k) s += at(k, c);
        return roundEven(s / 8.0);
    }
};

int countDiffering(const Neighbours& n, const std::uint8_t* centre, int low, int high) {
    int count = 0;
    for (int k = 0; k < 8; ++k) {
        bool differs = false;
        for (int c = 0; c < 3; ++c) differs |= !quiet(centre[c] - n.at(k, c), low, high);
        count += differs;
    }
    return count;
}

}  // namespace

void cDIBSection::EffectReduceNoise(int radius, int low, int high, int method, bool mark,
                                    ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    if (method < 1 || method > 4 || Height() < 3) return rp.done();
    const cDIBSection copy = *this;
    const int last = Width() * 3 - 6;
    for (int y = 1; y <= Height() - 2; ++y) {
        std::uint8_t* out = rowBits(y);
        const cDIBSection& src = method == 4 ? *this : copy;
        const Neighbours n{src.rowBits(y - 1), src.rowBits(y), src.rowBits(y + 1), 0};
        for (int x = 3; x <= last; x += 3) {
            Neighbours at = n;
            at.x = x;
            const std::uint8_t* c = (method == 4 ? src.rowBits(y) : copy.rowBits(y)) + x;
            bool replace;
            if (method <= 2) {
                bool allQuiet = true;
                for (int ch = 0; ch < 3; ++ch) allQuiet &= quiet(c[ch] - at.mean(ch), low, high);
                replace = !allQuiet;
                if (method == 2 && countDiffering(at, c, low, high) > radius) replace = true;
            } else {
                replace = countDiffering(at, c, low, high) > radius;
            }
            if (!replace) continue;
            const int mb = at.mean(0), mg = at.mean(1), mr = at.mean(2);
            out[x] = mark ? 0 : static_cast<std::uint8_t>(mb);
            out[x + 1] = mark ? 255 : static_cast<std::uint8_t>(mg);
            out[x + 2] = mark ? 0 : static_cast<std::uint8_t>(mr);
        }
        rp.step(y, Height());
    }
    rp.done();
}

}  // namespace brindle
