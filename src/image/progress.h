// The percent word of a running effect: written by the effect after each
// row, read by a timer on another thread.
#pragma once

#include <atomic>

namespace brindle {

class ProgressWord {
  public:
    ProgressWord() = default;
    ProgressWord(const ProgressWord& other) : value_(other.load()) {}
    ProgressWord& operator=(const ProgressWord& other) {
        store(other.load());
        return *this;
    }

    int load() const { return value_.load(std::memory_order_relaxed); }
    void store(int percent) { value_.store(percent, std::memory_order_relaxed); }

  private:
    std::atomic<int> value_{0};
};

// Sets both words to 0 on construction and to 100 by done(); step() sets
// (row x 100) / rows after each row.
class RowProgress {
  public:
    RowProgress(ProgressWord& own, ProgressWord* caller) : own_(own), caller_(caller) { set(0); }
    void step(int row, int rows) {
        set(rows > 0 ? static_cast<int>(static_cast<long long>(row) * 100 / rows) : 100);
    }
    void done() { set(100); }

  private:
    void set(int percent) {
        own_.store(percent);
        if (caller_) caller_->store(percent);
    }
    ProgressWord& own_;
    ProgressWord* caller_;
};

}  // namespace brindle
