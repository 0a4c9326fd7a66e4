// The numbered filter bank. Of its filters two are used: 3, a blur with
// weights adding up to 8, and 5, a five-point mean. Other numbers do
// nothing and return false.
#pragma once

#include "image/dib_section.h"

namespace brindle {

inline constexpr int kFilterBlur = 3;
inline constexpr int kFilterSoft = 5;

// Runs filter `number` on `bitmap` in place. `parameter` is accepted for
// the callers and has no effect. While one call runs, a second call from
// another thread returns false at once.
bool filterBitmap(int number, cDIBSection& bitmap, int parameter, ProgressWord* progress = nullptr);

}  // namespace brindle
