#include "explorer/thumbnail_feed.h"

#include <algorithm>
#include <cstdlib>

#include "explorer/folder_listing.h"
#include "image/file_stamp.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image/reduce.h"

namespace brindle::explorer {

namespace {

bool isJpeg(const std::string& path) {
    const auto dot = path.rfind('.');
    if (dot == std::string::npos) return false;
    std::string s = path.substr(dot + 1);
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s == "jpg" || s == "jpeg";
}

// The picture fitted into size x size, its shape kept.
ThumbnailResult makeThumbnail(const std::string& path, int size) {
    ThumbnailResult r;
    if (isMediaFile(path)) {
        r.media = true;
        return r;
    }
    cDIBSection full;
    bool ok = isJpeg(path) && LoadJPG(full, path, nullptr, size, size);
    if (!ok) {
        PictureFile f = LoadPictureFile(path);
        if (f.picture && f.picture.Handle()) {
            full = *f.picture.Handle();
            ok = !full.empty();
        }
    }
    if (!ok) {
        r.failed = true;
        return r;
    }
    // The decoder may have scaled by DCT: the source size is what it said in
    // the header, which LoadJPG does not return, so take the size read.
    int w = 0, h = 0;
    std::string bytes;
    if (isJpeg(path) && readPictureBytes(path, bytes) && readJpegSize(bytes, w, h)) {
        if ((full.Width() > full.Height()) != (w > h) && w != h) std::swap(w, h);
    } else {
        w = full.Width();
        h = full.Height();
    }
    r.sourceWidth = w;
    r.sourceHeight = h;
    const double scale = std::min(1.0, std::min(double(size) / full.Width(), double(size) / full.Height()));
    const int tw = std::max(1, int(full.Width() * scale + 0.5)), th = std::max(1, int(full.Height() * scale + 0.5));
    if (tw == full.Width() && th == full.Height()) {
        r.picture = std::move(full);
    } else if (!smoothResize(full, r.picture, tw, th)) {
        r.failed = true;
    }
    return r;
}

}  // namespace

ThumbnailFeed::ThumbnailFeed(std::string programDirectory, int threads, Delivery delivery)
    : programDirectory_(std::move(programDirectory)), delivery_(std::move(delivery)) {
    for (int i = 0; i < std::max(1, threads); ++i) workers_.emplace_back([this] { work(); });
}

ThumbnailFeed::~ThumbnailFeed() {
    {
        std::lock_guard lock(mutex_);
        quit_ = true;
        ++generation_;
    }
    wake_.notify_all();
    for (std::thread& t : workers_) t.join();
}

std::uint64_t ThumbnailFeed::start(std::vector<std::string> paths, int size) {
    std::uint64_t generation;
    {
        std::lock_guard lock(mutex_);
        paths_ = std::move(paths);
        taken_.assign(paths_.size(), false);
        remaining_ = static_cast<int>(paths_.size());
        size_ = size;
        first_ = last_ = 0;
        generation = ++generation_;
    }
    wake_.notify_all();
    return generation;
}

void ThumbnailFeed::setVisible(int first, int last) {
    std::lock_guard lock(mutex_);
    first_ = first;
    last_ = std::max(first, last);
}

void ThumbnailFeed::cancel() {
    std::lock_guard lock(mutex_);
    paths_.clear();
    taken_.clear();
    remaining_ = 0;
    ++generation_;
}

// Called with the lock held: the untaken entry nearest to the visible rows.
int ThumbnailFeed::takeNearest() {
    const int n = static_cast<int>(paths_.size());
    int best = -1;
    long bestDistance = 0;
    for (int i = 0; i < n; ++i) {
        if (taken_[i]) continue;
        const long d = i < first_ ? long(first_ - i) : i > last_ ? long(i - last_) : 0;
        if (best < 0 || d < bestDistance) {
            best = i;
            bestDistance = d;
            if (d == 0) break;
        }
    }
    if (best >= 0) {
        taken_[best] = true;
        --remaining_;
    }
    return best;
}

void ThumbnailFeed::work() {
    for (;;) {
        std::string path;
        int index, size;
        std::uint64_t generation;
        {
            std::unique_lock lock(mutex_);
            wake_.wait(lock, [this] { return quit_ || remaining_ > 0; });
            if (quit_) return;
            index = takeNearest();
            if (index < 0) continue;
            path = paths_[index];
            size = size_;
            generation = generation_;
        }
        ThumbnailResult r = makeThumbnail(path, size);
        r.generation = generation;
        r.index = index;
        {
            std::lock_guard lock(mutex_);
            if (generation != generation_) continue;  // the folder changed meanwhile
        }
        delivery_(std::move(r));
    }
}

}  // namespace brindle::explorer
