// The dynamic arrays of the album files: index 0 is a dummy, entries run
// from 1 to upper(). A never-allocated array is distinct from an empty one
// and is stored as such.
#pragma once

#include <cassert>
#include <cstddef>
#include <vector>

namespace brindle {

template <class T>
class DynArray {
public:
    DynArray() = default;

    bool allocated() const { return allocated_; }
    // Upper bound: the number of entries after the dummy (-1 for an
    // allocated array without even a dummy, 0 when not allocated).
    int upper() const { return allocated_ ? static_cast<int>(items_.size()) - 1 : 0; }
    std::size_t count() const { return items_.size(); }  // dummy included

    T& operator[](int i) { assert(i >= 0 && static_cast<std::size_t>(i) < items_.size()); return items_[static_cast<std::size_t>(i)]; }
    const T& operator[](int i) const { assert(i >= 0 && static_cast<std::size_t>(i) < items_.size()); return items_[static_cast<std::size_t>(i)]; }

    // Allocated with the dummy alone.
    void resetToDummy() {
        allocated_ = true;
        items_.assign(1, T{});
    }
    void release() {
        allocated_ = false;
        items_.clear();
    }
    // Grows by one entry, allocating the dummy first when needed.
    T& add() {
        if (!allocated_ || items_.empty()) resetToDummy();
        return items_.emplace_back();
    }
    // Grows or shrinks to `upper` entries after the dummy, keeping contents.
    void resize(int upper) {
        allocated_ = true;
        items_.resize(static_cast<std::size_t>(upper < 0 ? 0 : upper) + 1);
    }

    // Raw access for the codec: every element including the dummy.
    std::vector<T>& items() { return items_; }
    const std::vector<T>& items() const { return items_; }
    void setAllocated(bool a) { allocated_ = a; }

    bool operator==(const DynArray&) const = default;

private:
    bool allocated_ = false;
    std::vector<T> items_;
};

}  // namespace brindle
