// The batch over many pictures. Worker threads read, work and encode the
// pictures ahead; the calling thread takes the results in list order and
// does everything anyone can see: status lines, the preview, choosing the
// target name, writing and the messages. So a run on several threads says
// and writes exactly what a run on one says and writes.
#include "studio/batch_run.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <unordered_set>

#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "studio/batch_save.h"

namespace brindle::studio {
namespace {

// What the work on one picture left for the calling thread to show and save.
struct PictureResult {
    // Worked ahead but depends on what earlier pictures write: to be done
    // again in list order.
    bool redo = false;
    bool loaded = false;
    std::optional<ImageMessage> loadMessage;
    bool belowFilter = false;
    std::vector<std::string> steps;
    cDIBSection preview;  // only when a preview is wanted
    EncodedPicture file;
};

class PictureTreatment {
  public:
    PictureTreatment(const BatchOptions& options, const PictureWork& work, Language language,
                     bool keepPreview)
        : options_(options), work_(work), language_(language), keepPreview_(keepPreview) {}

    // `ahead`: worked before the earlier pictures are saved.
    PictureResult treat(const std::string& path, bool ahead) const {
        PictureResult r;
        try {
            cDIBSection dib;
            if (!read(path, dib, r.loadMessage)) {
                r.redo = ahead;  // an earlier result may yet be written there
                return r;
            }
            r.loaded = true;
            if (!aboveFilter(dib)) {
                r.belowFilter = true;
                return r;
            }
            work_(dib, [&r](const std::string& step) { r.steps.push_back(step); });
            r.file = encodeForWriter(dib, batchWriter(path, options_.fileType),
                                     options_.jpegQuality);
            if (keepPreview_) r.preview = std::move(dib);
        } catch (const std::exception&) {
            // Out of memory on a huge picture, for one: try once more in
            // order, then leave it out.
            r = PictureResult{};
            r.redo = ahead;
        }
        return r;
    }

  private:
    bool read(const std::string& path, cDIBSection& dib, std::optional<ImageMessage>& message) const {
        if (readerFor(path) == PictureReader::Jpeg && LoadJPG(dib, path)) return true;
        const ImageEnv env{language_, {}, true};
        const PictureFile file = LoadPictureFile(path, env);
        message = file.message;
        return file.picture && dib.CreateFromPicture(file.picture);
    }

    // Treated when wider or higher than the filter.
    bool aboveFilter(const cDIBSection& dib) const {
        return dib.Width() > options_.minWidth || dib.Height() > options_.minHeight;
    }

    const BatchOptions& options_;
    const PictureWork& work_;
    Language language_;
    bool keepPreview_;
};

// Worker threads that treat the pictures ahead of the calling thread, at
// most `threads + 1` pictures not yet taken, so memory stays bounded.
class AheadPipeline {
  public:
    AheadPipeline(const std::vector<std::string>& paths, const PictureTreatment& treatment,
                  int threads)
        : paths_(paths), treatment_(treatment), capacity_(static_cast<std::size_t>(threads) + 1) {
        // A path met for the second time is read only after the first
        // result went to it.
        std::unordered_set<std::string> seen;
        repeated_.resize(paths.size());
        for (std::size_t i = 0; i < paths.size(); ++i) repeated_[i] = !seen.insert(paths[i]).second;
        for (int t = 0; t < threads; ++t) workers_.emplace_back([this] { workerLoop(); });
    }

    ~AheadPipeline() {
        {
            std::lock_guard lock(mutex_);
            stopping_ = true;
        }
        changed_.notify_all();
        for (std::thread& t : workers_) t.join();  // each finishes its picture
    }

    AheadPipeline(const AheadPipeline&) = delete;
    AheadPipeline& operator=(const AheadPipeline&) = delete;

    // The result of picture `index`; indices are taken in order.
    PictureResult take(std::size_t index) {
        PictureResult r;
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [&] { return ready_.count(index) != 0; });
            r = std::move(ready_[index]);
            ready_.erase(index);
            taken_ = index + 1;
        }
        changed_.notify_all();
        if (r.redo) r = treatment_.treat(paths_[index], false);
        return r;
    }

  private:
    void workerLoop() {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [&] {
                return stopping_ || next_ >= paths_.size() || next_ < taken_ + capacity_;
            });
            if (stopping_ || next_ >= paths_.size()) return;
            const std::size_t index = next_++;
            lock.unlock();
            PictureResult r;
            if (repeated_[index])
                r.redo = true;
            else
                r = treatment_.treat(paths_[index], true);
            lock.lock();
            ready_[index] = std::move(r);
            changed_.notify_all();
        }
    }

    const std::vector<std::string>& paths_;
    const PictureTreatment& treatment_;
    const std::size_t capacity_;
    std::vector<bool> repeated_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t next_ = 0;   // the next picture a worker takes
    std::size_t taken_ = 0;  // pictures the calling thread has taken
    std::map<std::size_t, PictureResult> ready_;
    bool stopping_ = false;
    std::vector<std::thread> workers_;
};

int threadCount(const BatchOptions& options) {
    int n = options.threads;
    if (n <= 0) n = static_cast<int>(std::thread::hardware_concurrency());
    n = std::max(n, 1);
    return static_cast<int>(std::min<std::size_t>(static_cast<std::size_t>(n), options.pictures.size()));
}

void showLoadMessage(const ImageMessage& m, Prompter& prompter, Language language) {
    prompter.message(m.text, kButtonsOk | kIconCritical,
                     m.title.empty() ? tr(language, "Fehler", "Error") : m.title);
}

// Shows and saves one result, in list order.
void finishPicture(const std::string& path, PictureResult& r, const BatchOptions& options,
                   Prompter& prompter, Language language, const BatchCallbacks& callbacks,
                   BatchResult& result) {
    if (!r.loaded) {
        if (r.loadMessage) showLoadMessage(*r.loadMessage, prompter, language);
        ++result.skipped;
        return;
    }
    if (r.belowFilter) {
        ++result.skipped;
        return;
    }
    if (callbacks.status)
        for (const std::string& step : r.steps) callbacks.status(path + ": " + step);
    if (callbacks.finished) callbacks.finished(r.preview);
    r.preview.ClearUp();
    const std::string target = batchTargetPath(path, options);
    const bool overwrite = options.saveMode == SaveMode::OverwriteOriginals && target == path;
    if (saveBatchFile(r.file, target, overwrite, prompter, language)) {
        ++result.treated;
        result.written.push_back(target);
    } else {
        ++result.failed;
    }
}

}  // namespace

BatchResult runPictureBatch(const BatchOptions& options, const PictureWork& work,
                            Prompter& prompter, Language language,
                            const BatchCallbacks& callbacks) {
    BatchResult result;
    const std::size_t total = options.pictures.size();
    const PictureTreatment treatment(options, work, language, bool(callbacks.finished));
    const int threads = threadCount(options);
    // One thread: everything in order on the calling thread.
    std::optional<AheadPipeline> ahead;
    if (threads > 1) ahead.emplace(options.pictures, treatment, threads);
    if (callbacks.progress) callbacks.progress(0, static_cast<int>(total));
    for (std::size_t i = 0; i < total; ++i) {
        if (callbacks.cancelled && callbacks.cancelled()) {
            result.cancelled = true;
            break;
        }
        const std::string& path = options.pictures[i];
        if (callbacks.status) callbacks.status(path);
        PictureResult r = ahead ? ahead->take(i) : treatment.treat(path, false);
        finishPicture(path, r, options, prompter, language, callbacks, result);
        if (callbacks.progress) callbacks.progress(static_cast<int>(i + 1), static_cast<int>(total));
    }
    return result;
}

}  // namespace brindle::studio
