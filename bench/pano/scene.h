// A photo-like landscape made for the panorama benchmark: sky with clouds,
// hills, textured ground, houses and trees, a grain of sensor noise. Fine
// structure at many scales, so both our column search and a feature
// detector have something to hold on to.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "image/dib_section.h"

namespace bench {

// Smooth noise: random values on a lattice of `step` pixels, blended with
// a smoothstep between lattice points.
class ValueNoise {
  public:
    ValueNoise(int width, int height, int step, std::mt19937& rng) : step_(step) {
        cols_ = width / step + 2;
        rows_ = height / step + 2;
        std::uniform_real_distribution<float> v(-1.0f, 1.0f);
        grid_.resize(static_cast<std::size_t>(cols_) * rows_);
        for (float& g : grid_) g = v(rng);
    }
    float at(int x, int y) const {
        const int gx = x / step_, gy = y / step_;
        const float fx = smooth(static_cast<float>(x % step_) / step_);
        const float fy = smooth(static_cast<float>(y % step_) / step_);
        const float top = lerp(cell(gx, gy), cell(gx + 1, gy), fx);
        const float bottom = lerp(cell(gx, gy + 1), cell(gx + 1, gy + 1), fx);
        return lerp(top, bottom, fy);
    }

  private:
    static float smooth(float t) { return t * t * (3 - 2 * t); }
    static float lerp(float a, float b, float t) { return a + (b - a) * t; }
    float cell(int x, int y) const { return grid_[static_cast<std::size_t>(y) * cols_ + x]; }
    int step_, cols_, rows_;
    std::vector<float> grid_;
};

inline void put(brindle::cDIBSection& dib, int x, int y, int b, int g, int r) {
    std::uint8_t* p = dib.rowBits(dib.Height() - 1 - y) + 3 * x;
    p[0] = static_cast<std::uint8_t>(std::clamp(b, 0, 255));
    p[1] = static_cast<std::uint8_t>(std::clamp(g, 0, 255));
    p[2] = static_cast<std::uint8_t>(std::clamp(r, 0, 255));
}

inline brindle::cDIBSection landscape(int width, int height, unsigned seed) {
    std::mt19937 rng(seed);
    const ValueNoise coarse(width, height, 700, rng), mid(width, height, 150, rng),
        fine(width, height, 31, rng), finer(width, height, 7, rng);
    std::vector<int> horizon(static_cast<std::size_t>(width));
    for (int x = 0; x < width; ++x)
        horizon[static_cast<std::size_t>(x)] = static_cast<int>(
            height * 0.45 + height * 0.12 * coarse.at(x, 0) + height * 0.03 * mid.at(x, 7));
    brindle::cDIBSection dib;
    dib.Create(width, height);
    std::uniform_int_distribution<int> grain(-3, 3);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const float texture = 45 * mid.at(x, y) + 25 * fine.at(x, y) + 12 * finer.at(x, y);
            if (y < horizon[static_cast<std::size_t>(x)]) {
                const float cloud = std::max(0.0f, coarse.at(x, y) + 0.6f * mid.at(x, y)) * 160;
                const int sky = 150 + 80 * y / height;
                put(dib, x, y, 235 + grain(rng), static_cast<int>(sky + cloud * 0.7f) + grain(rng),
                    static_cast<int>(90 + cloud) + grain(rng));
            } else {
                put(dib, x, y, static_cast<int>(50 + texture * 0.5f) + grain(rng),
                    static_cast<int>(110 + texture) + grain(rng),
                    static_cast<int>(80 + texture * 0.8f) + grain(rng));
            }
        }
    }
    // Houses (boxes with a dark window) and trees (dark discs) on the ground.
    std::uniform_int_distribution<int> px(0, width - 1), size(height / 40, height / 10),
        colour(40, 230);
    for (int n = width / 60; n > 0; --n) {
        const int x0 = px(rng), s = size(rng);
        const int y0 = std::min(height - 1, horizon[static_cast<std::size_t>(x0)] + size(rng));
        const bool house = n % 3 == 0;
        const int b = colour(rng), g = colour(rng), r = colour(rng);
        for (int y = std::max(0, y0 - s); y < std::min(height, y0 + s); ++y)
            for (int x = std::max(0, x0 - s); x < std::min(width, x0 + s); ++x) {
                const int dx = x - x0, dy = y - y0;
                if (house) {
                    const bool window = std::abs(dx) < s / 4 && std::abs(dy) < s / 4;
                    put(dib, x, y, window ? 30 : b, window ? 30 : g, window ? 40 : r);
                } else if (dx * dx + dy * dy < s * s) {
                    put(dib, x, y, 20 + b / 6, 60 + g / 4 + dx % 7, 25 + r / 6);
                }
            }
    }
    return dib;
}

// The w x h piece of `src` whose top-left corner is (x, y).
inline brindle::cDIBSection cut(const brindle::cDIBSection& src, int x, int y, int w, int h) {
    brindle::cDIBSection dib;
    dib.Create(w, h);
    for (int row = 0; row < h; ++row) {
        const std::uint8_t* from = src.rowBits(src.Height() - 1 - (y + row)) + 3 * x;
        std::copy(from, from + 3 * w, dib.rowBits(h - 1 - row));
    }
    return dib;
}

}  // namespace bench
