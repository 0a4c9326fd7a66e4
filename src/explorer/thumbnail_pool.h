// Worker threads that bring the thumbnails of the shown folder, the ones
// nearest to what the user sees first. The caller sets the folder's list
// and, at any time, the visible range; each free worker takes the job
// nearest to that range. Each result goes to the sink as soon as it is
// made and the pool keeps no picture, so memory does not grow with the
// folder. A new folder cancels the old one at once: jobs not begun are
// dropped, and results of jobs under way are never delivered.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "explorer/thumbnail_cache.h"

namespace brindle::explorer {

struct ThumbnailResult {
    std::uint64_t generation = 0;  // as setFolder returned it
    std::size_t index = 0;         // in the folder's list
    std::string path;
    Thumbnail thumbnail;
};

// Makes one thumbnail; usually ThumbnailCache::get.
using ThumbnailMaker = std::function<Thumbnail(const std::string& path)>;
// Called on a worker thread, one result at a time. It must not call
// setFolder or clear; a GUI posts the result to its own thread and there
// drops results whose generation is no longer current.
using ThumbnailSink = std::function<void(ThumbnailResult&& result)>;

class ThumbnailPool {
  public:
    // `threads` 0 takes one per core, at least two.
    ThumbnailPool(ThumbnailMaker maker, ThumbnailSink sink, int threads = 0);
    ~ThumbnailPool();  // cancels and joins
    ThumbnailPool(const ThumbnailPool&) = delete;
    ThumbnailPool& operator=(const ThumbnailPool&) = delete;

    // The list of a new folder; the visible range starts at its top. No
    // result of an earlier list is delivered once this returns.
    std::uint64_t setFolder(std::vector<std::string> paths);
    // Items first..last (inclusive) are on the screen.
    void setVisibleRange(std::size_t first, std::size_t last);
    // Drops every job; as setFolder with an empty list.
    void clear();
    // Blocks until every job of the current list is delivered or dropped.
    void waitIdle();

    int threads() const { return static_cast<int>(workers_.size()); }
    std::uint64_t generation() const;

  private:
    void work();
    // The pending job nearest to the visible range; the lock is held.
    std::size_t takeNearest();

    ThumbnailMaker maker_;
    ThumbnailSink sink_;
    mutable std::mutex mutex_;  // guards the fields below
    std::condition_variable wake_, idle_;
    std::vector<std::string> paths_;
    std::set<std::size_t> pending_;
    std::size_t first_ = 0, last_ = 0;
    std::uint64_t generation_ = 0;
    int running_ = 0;  // jobs of the current generation being made
    bool stopping_ = false;
    // Held while a result is checked and delivered, and while the
    // generation changes, so that no stale result slips past setFolder.
    std::mutex deliver_;
    std::vector<std::thread> workers_;
};

// Worker threads for `requested` (0: one per core, at least two).
int thumbnailPoolThreads(int requested);

}  // namespace brindle::explorer
