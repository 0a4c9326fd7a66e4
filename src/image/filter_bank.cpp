#include "image/filter_bank.h"

#include <atomic>

namespace brindle {
namespace {

std::atomic<bool> busy{false};

struct BusyGuard {
    bool acquired = !busy.exchange(true);
    ~BusyGuard() {
        if (acquired) busy.store(false);
    }
};

// Interior pixels only (every side keeps its outer pixel), in place, so a
// pixel sees its already filtered left and lower neighbours.
template <class Mix>
void filterInterior(cDIBSection& dib, ProgressWord* progress, Mix mix) {
    ProgressWord own;
    RowProgress rp(own, progress);
    const int last = (dib.Width() - 2) * 3;
    for (int y = 1; y <= dib.Height() - 2; ++y) {
        std::uint8_t* p = dib.rowBits(y);
        const std::uint8_t* lo = dib.rowBits(y - 1);
        const std::uint8_t* hi = dib.rowBits(y + 1);
        for (int x = 3; x <= last; x += 3)
            for (int c = x; c < x + 3; ++c) p[c] = mix(p[c], p[c - 3], p[c + 3], hi[c], lo[c]);
        rp.step(y, dib.Height());
    }
    rp.done();
}

}  // namespace

bool filterBitmap(int number, cDIBSection& bitmap, int /*parameter*/, ProgressWord* progress) {
    BusyGuard guard;
    if (!guard.acquired || bitmap.empty()) return false;
    switch (number) {
        case kFilterBlur:
            // Centre 4, the four direct neighbours 1 each: weight 8, shift 3.
            filterInterior(bitmap, progress, [](int c, int l, int r, int u, int d) {
                return static_cast<std::uint8_t>((4 * c + l + r + u + d) >> 3);
            });
            return true;
        case kFilterSoft:
            filterInterior(bitmap, progress, [](int c, int l, int r, int u, int d) {
                return static_cast<std::uint8_t>((c + l + r + u + d) / 5);
            });
            return true;
        default:
            return false;
    }
}

}  // namespace brindle
