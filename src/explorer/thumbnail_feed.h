// Thumbnails for the explorer's list, made on worker threads: the pictures
// nearest to the visible rows first, a new folder dropping the old work at
// once. Results are handed to a callback on the worker thread.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "image/dib_section.h"

namespace brindle::explorer {

struct ThumbnailResult {
    std::uint64_t generation = 0;
    int index = 0;              // position in the list given to start()
    cDIBSection picture;        // empty for media files and failures
    int sourceWidth = 0;        // upright size of the source
    int sourceHeight = 0;
    bool media = false;
    bool failed = false;
};

class ThumbnailFeed {
  public:
    using Delivery = std::function<void(ThumbnailResult&&)>;

    // `programDirectory` holds the cache; `threads` workers (at least one).
    ThumbnailFeed(std::string programDirectory, int threads, Delivery delivery);
    ~ThumbnailFeed();
    ThumbnailFeed(const ThumbnailFeed&) = delete;
    ThumbnailFeed& operator=(const ThumbnailFeed&) = delete;

    // Starts on a new list; what was left of the old one is never delivered.
    // Returns the generation the results of this list carry.
    std::uint64_t start(std::vector<std::string> paths, int size);
    // The rows now on screen; the work nearest to them is taken next.
    void setVisible(int first, int last);
    // Drops all waiting work.
    void cancel();

  private:
    void work();
    int takeNearest();

    std::string programDirectory_;
    Delivery delivery_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::vector<std::string> paths_;
    std::vector<bool> taken_;
    int remaining_ = 0;
    int size_ = 96;
    int first_ = 0;
    int last_ = 0;
    std::uint64_t generation_ = 0;
    bool quit_ = false;
    std::vector<std::thread> workers_;
};

}  // namespace brindle::explorer
