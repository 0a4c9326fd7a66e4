#include "explorer/thumbnail_pool.h"

#include <condition_variable>
#include <filesystem>
#include <map>
#include <mutex>
#include <vector>

#include "explorer/cache_folder.h"
#include "support/temp_home.h"
#include "thumbnail_test_support.h"

using namespace brindle;
using namespace brindle::explorer;
using namespace brindle::test;

namespace {

// A maker that records what it was asked for and holds every job until
// the test opens the gate.
class GatedMaker {
  public:
    Thumbnail make(const std::string& path) {
        std::unique_lock lock(mutex_);
        asked_.push_back(path);
        changed_.notify_all();
        changed_.wait(lock, [&] { return open_; });
        Thumbnail t;
        t.kind = ThumbnailKind::Picture;
        t.sourceWidth = static_cast<int>(path.size());
        return t;
    }
    void open() {
        std::lock_guard lock(mutex_);
        open_ = true;
        changed_.notify_all();
    }
    // Waits until `count` jobs have begun.
    void waitForBegun(std::size_t count) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return asked_.size() >= count; });
    }
    std::vector<std::string> asked() {
        std::lock_guard lock(mutex_);
        return asked_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> asked_;
    bool open_ = false;
};

struct Delivered {
    std::mutex mutex;
    std::vector<ThumbnailResult> results;
    ThumbnailSink sink() {
        return [this](ThumbnailResult&& r) {
            std::lock_guard lock(mutex);
            results.push_back(std::move(r));
        };
    }
};

std::vector<std::string> names(const std::string& prefix, int count) {
    std::vector<std::string> v;
    for (int i = 0; i < count; ++i) v.push_back(prefix + std::to_string(i));
    return v;
}

}  // namespace

TEST(ThumbnailPool, JobsNearestTheVisibleRangeComeFirst) {
    GatedMaker maker;
    Delivered delivered;
    ThumbnailPool pool([&](const std::string& p) { return maker.make(p); }, delivered.sink(), 1);
    const std::uint64_t generation = pool.setFolder(names("p", 20));
    maker.waitForBegun(1);  // the top of the list, before any range was set
    pool.setVisibleRange(10, 12);
    maker.open();
    pool.waitIdle();

    // The range top down, then outwards, the one below first on a tie.
    const std::vector<int> order = {0,  10, 11, 12, 13, 9, 14, 8, 15, 7,
                                    16, 6,  17, 5,  18, 4, 19, 3, 2,  1};
    std::vector<std::string> expected;
    for (int i : order) expected.push_back("p" + std::to_string(i));
    EXPECT_EQ(maker.asked(), expected);
    ASSERT_EQ(delivered.results.size(), 20u);
    for (std::size_t i = 0; i < order.size(); ++i) {
        EXPECT_EQ(delivered.results[i].index, static_cast<std::size_t>(order[i]));
        EXPECT_EQ(delivered.results[i].path, expected[i]);
        EXPECT_EQ(delivered.results[i].generation, generation);
    }
    EXPECT_EQ(pool.threads(), 1);
}

TEST(ThumbnailPool, ANewFolderCancelsTheOldOneAndNothingOldIsDelivered) {
    GatedMaker maker;
    Delivered delivered;
    ThumbnailPool pool([&](const std::string& p) { return maker.make(p); }, delivered.sink(), 2);
    EXPECT_EQ(pool.threads(), 2);
    const std::uint64_t old = pool.setFolder(names("old", 10));
    maker.waitForBegun(2);  // both workers are inside a job of the old folder
    const std::uint64_t fresh = pool.setFolder(names("new", 3));
    EXPECT_GT(fresh, old);
    maker.open();
    pool.waitIdle();

    const std::vector<std::string> asked = maker.asked();
    ASSERT_EQ(asked.size(), 5u) << "the eight old jobs not begun are dropped";
    std::map<std::size_t, int> seen;
    for (const ThumbnailResult& r : delivered.results) {
        EXPECT_EQ(r.generation, fresh);
        EXPECT_EQ(r.path, "new" + std::to_string(r.index));
        ++seen[r.index];
    }
    EXPECT_EQ(seen, (std::map<std::size_t, int>{{0, 1}, {1, 1}, {2, 1}}));

    // Closing the folder (an empty list) drops the rest the same way.
    GatedMaker held;
    Delivered none;
    ThumbnailPool busy([&](const std::string& p) { return held.make(p); }, none.sink(), 2);
    busy.setFolder(names("x", 50));
    held.waitForBegun(2);
    busy.clear();
    held.open();
    busy.waitIdle();
    EXPECT_EQ(held.asked().size(), 2u);
    EXPECT_TRUE(none.results.empty());
}

class ThumbnailPoolFilesTest : public TempHomeTest {};

TEST_F(ThumbnailPoolFilesTest, TwoThreadsLeaveTheSameFilesAsOne) {
    const std::string folder = path("Bilder/");
    std::vector<std::string> paths;
    for (int i = 0; i < 12; ++i) {
        const std::string p = folder + "photo" + std::to_string(i) + ".jpg";
        writePicture(p, noisePicture(200 + 17 * i, 150 + 9 * i, static_cast<unsigned>(i + 1)));
        paths.push_back(p);
    }
    writeFile(folder + "broken.jpg", "not a jpeg");
    writeFile(folder + "song.mp3", "ID3");
    paths.push_back(folder + "broken.jpg");
    paths.push_back(folder + "song.mp3");

    std::map<std::string, std::string> files[2];
    for (int threads : {1, 2}) {
        SCOPED_TRACE(threads);
        const std::string home = path(threads == 1 ? "one/" : "two/");
        ThumbnailSettings settings;
        settings.size = 100;
        const ThumbnailCache cache(home, settings);
        Delivered delivered;
        ThumbnailPool pool([&](const std::string& p) { return cache.get(p); }, delivered.sink(),
                           threads);
        pool.setFolder(paths);
        pool.setVisibleRange(5, 8);
        pool.waitIdle();
        ASSERT_EQ(delivered.results.size(), paths.size());
        std::map<std::size_t, ThumbnailKind> kinds;
        for (const ThumbnailResult& r : delivered.results) kinds[r.index] = r.thumbnail.kind;
        ASSERT_EQ(kinds.size(), paths.size()) << "each once";
        EXPECT_EQ(kinds[12], ThumbnailKind::Error);
        EXPECT_EQ(kinds[13], ThumbnailKind::Media);
        EXPECT_EQ(kinds[0], ThumbnailKind::Picture);
        for (const auto& entry : std::filesystem::directory_iterator(home + "Thumbnails/" +
                                                                     thumbnailFolderName(folder))) {
            const std::string name = entry.path().filename().string();
            files[threads - 1][name] = readFile(entry.path().string());
            EXPECT_EQ(modified(entry.path().string()),
                      modified(folder + name.substr(0, name.size() - 4)));
        }
    }
    EXPECT_EQ(files[0].size(), 12u);
    EXPECT_TRUE(files[0] == files[1]) << "byte for byte";
}
