// Readable boxes and points in test failures.
#pragma once

#include <ostream>

#include "editor/geometry.h"

namespace brindle::editor {
inline void PrintTo(const Box& b, std::ostream* os) {
    *os << "(" << b.left << "," << b.top << " " << b.width << "x" << b.height << ")";
}
inline void PrintTo(const Point& p, std::ostream* os) { *os << "(" << p.x << "," << p.y << ")"; }
}  // namespace brindle::editor
