#include "html/index_thumbnails.h"

#include <map>

namespace brindle::html {

ThumbnailPool::ThumbnailPool(std::vector<WebPicture> jobs, int threads, ThumbnailWriter writer)
    : jobs_(std::move(jobs)), outcomes_(jobs_.size()), writer_(std::move(writer)) {
    std::map<std::string, std::size_t> groupOfTarget;
    for (std::size_t i = 0; i < jobs_.size(); ++i) {
        auto [it, fresh] = groupOfTarget.try_emplace(jobs_[i].target, groups_.size());
        if (fresh) groups_.emplace_back();
        groups_[it->second].push_back(i);
    }
    const std::size_t count = std::min<std::size_t>(static_cast<std::size_t>(std::max(1, threads)), groups_.size());
    for (std::size_t t = 0; t < count; ++t) workers_.emplace_back([this] { work(); });
}

ThumbnailPool::~ThumbnailPool() {
    stop();
    for (std::thread& t : workers_) t.join();
}

void ThumbnailPool::stop() {
    stopped_ = true;
    std::lock_guard lock(mutex_);
    done_.notify_all();
}

void ThumbnailPool::work() {
    for (;;) {
        const std::size_t g = nextGroup_++;
        if (g >= groups_.size()) return;
        for (std::size_t job : groups_[g]) {
            if (stopped_) {
                finish(job, false, "stopped");
                continue;
            }
            std::string error;
            const bool ok = writer_ ? writer_(jobs_[job], error) : false;
            finish(job, ok, std::move(error));
        }
    }
}

void ThumbnailPool::finish(std::size_t job, bool ok, std::string error) {
    std::lock_guard lock(mutex_);
    outcomes_[job] = Outcome{true, ok, std::move(error)};
    done_.notify_all();
}

bool ThumbnailPool::wait(std::size_t i, std::string& error) {
    std::unique_lock lock(mutex_);
    // A stopped pool may never reach the job: its groups are not taken.
    done_.wait(lock, [&] { return outcomes_[i].finished || stopped_; });
    if (!outcomes_[i].finished) {
        error = "stopped";
        return false;
    }
    error = outcomes_[i].error;
    return outcomes_[i].ok;
}

int thumbnailThreads(int requested) {
    if (requested > 0) return requested;
    const unsigned cores = std::thread::hardware_concurrency();
    return cores == 0 ? 2 : static_cast<int>(cores);
}

}  // namespace brindle::html
