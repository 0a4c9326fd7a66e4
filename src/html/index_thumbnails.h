// Thumbnails of the picture index, made by worker threads while the caller
// takes the results in list order. Jobs that write the same file run one
// after the other in list order, so the files on disk are those a run on
// one thread leaves.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "html/html_run.h"

namespace brindle::html {

using ThumbnailWriter = std::function<bool(const WebPicture&, std::string& error)>;

class ThumbnailPool {
public:
    // Starts `threads` workers (at least one) over the jobs.
    ThumbnailPool(std::vector<WebPicture> jobs, int threads, ThumbnailWriter writer);
    ~ThumbnailPool();  // stops and joins
    ThumbnailPool(const ThumbnailPool&) = delete;
    ThumbnailPool& operator=(const ThumbnailPool&) = delete;

    std::size_t size() const { return jobs_.size(); }
    // Waits until job `i` is written; false with `error` when it failed or
    // was never started because the pool stopped.
    bool wait(std::size_t i, std::string& error);
    // No further job starts; jobs under way finish.
    void stop();

private:
    struct Outcome {
        bool finished = false;
        bool ok = false;
        std::string error;
    };
    void work();
    void finish(std::size_t job, bool ok, std::string error);

    std::vector<WebPicture> jobs_;
    std::vector<std::vector<std::size_t>> groups_;  // jobs by target, in order of first appearance
    std::vector<Outcome> outcomes_;
    ThumbnailWriter writer_;
    std::atomic<std::size_t> nextGroup_{0};
    std::atomic<bool> stopped_{false};
    std::mutex mutex_;
    std::condition_variable done_;
    std::vector<std::thread> workers_;
};

// Worker threads for `requested` (0: one per core).
int thumbnailThreads(int requested);

}  // namespace brindle::html
