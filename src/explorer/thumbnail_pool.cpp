#include "explorer/thumbnail_pool.h"

#include <algorithm>
#include <iterator>

namespace brindle::explorer {

int thumbnailPoolThreads(int requested) {
    if (requested > 0) return requested;
    return std::max(2, static_cast<int>(std::thread::hardware_concurrency()));
}

ThumbnailPool::ThumbnailPool(ThumbnailMaker maker, ThumbnailSink sink, int threads)
    : maker_(std::move(maker)), sink_(std::move(sink)) {
    const int count = thumbnailPoolThreads(threads);
    for (int i = 0; i < count; ++i) workers_.emplace_back([this] { work(); });
}

ThumbnailPool::~ThumbnailPool() {
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
        pending_.clear();
        ++generation_;
    }
    wake_.notify_all();
    idle_.notify_all();
    for (std::thread& t : workers_) t.join();
}

std::uint64_t ThumbnailPool::setFolder(std::vector<std::string> paths) {
    std::lock_guard delivering(deliver_);
    std::uint64_t generation = 0;
    {
        std::lock_guard lock(mutex_);
        paths_ = std::move(paths);
        pending_.clear();
        for (std::size_t i = 0; i < paths_.size(); ++i) pending_.insert(pending_.end(), i);
        first_ = last_ = 0;
        running_ = 0;  // jobs under way belong to the old list now
        generation = ++generation_;
    }
    wake_.notify_all();
    idle_.notify_all();
    return generation;
}

void ThumbnailPool::clear() { setFolder({}); }

void ThumbnailPool::setVisibleRange(std::size_t first, std::size_t last) {
    std::lock_guard lock(mutex_);
    first_ = std::min(first, last);
    last_ = std::max(first, last);
}

std::uint64_t ThumbnailPool::generation() const {
    std::lock_guard lock(mutex_);
    return generation_;
}

void ThumbnailPool::waitIdle() {
    std::unique_lock lock(mutex_);
    idle_.wait(lock, [&] { return stopping_ || (pending_.empty() && running_ == 0); });
}

std::size_t ThumbnailPool::takeNearest() {
    // Inside the range the first pending one; outside it the nearer of the
    // two neighbours, the one below on a tie (lists are read downwards).
    auto after = pending_.lower_bound(first_);
    auto chosen = after;
    if (after == pending_.end() || *after > last_) {
        if (after != pending_.begin()) {
            const auto before = std::prev(after);
            if (after == pending_.end() || first_ - *before < *after - last_) chosen = before;
        }
    }
    const std::size_t index = *chosen;
    pending_.erase(chosen);
    return index;
}

void ThumbnailPool::work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [&] { return stopping_ || !pending_.empty(); });
        if (stopping_) return;
        const std::size_t index = takeNearest();
        const std::uint64_t generation = generation_;
        std::string path = paths_[index];
        ++running_;
        lock.unlock();

        ThumbnailResult result{generation, index, path, maker_ ? maker_(path) : Thumbnail{}};
        {
            std::lock_guard delivering(deliver_);
            bool current = false;
            {
                std::lock_guard check(mutex_);
                current = generation == generation_;
            }
            if (current && sink_) sink_(std::move(result));
        }

        lock.lock();
        if (generation == generation_) --running_;
        if (pending_.empty() && running_ == 0) idle_.notify_all();
    }
}

}  // namespace brindle::explorer
