// Opens a page of large photos in the real main window (run it offscreen)
// and measures what a user feels: the time until every picture is drawn,
// the longest the GUI thread did not answer, and the peak memory.
// Usage: bench_editor WORKDIR PICTURE...  (at most 24 pictures, 6 x 4)
// Prints "drawn_ms stall_ms peak_mb scale busy_ms" on stdout; scale is the
// DCT scale the canvas decodes the first picture at, as djpeg takes it;
// busy_ms the most the GUI thread itself worked between two timer ticks.
#include <sys/resource.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>
#include <cstdio>
#include <ctime>
#include <filesystem>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/settings_store.h"
#include "album/stacking.h"
#include "editor/frm_notepad.h"
#include "image/image_info.h"
#include "image/jpeg_io.h"
#include "shell/main_window.h"
#include "shell/startup.h"

using namespace brindle;

namespace {

constexpr int kColumns = 6, kBoxW = 200, kBoxH = 150, kGap = 10;

// Answers nothing and counts what it was asked.
class QuietPrompter : public Prompter {
public:
    int asked = 0;
    int message(const std::string&, int, const std::string&) override { return ++asked, kOk; }
    int askYesNoAll(const std::string&, const std::string&) override { return ++asked, kNo; }
    std::string openFile(const FileDialog&) override { return ++asked, std::string(); }
    std::string saveFile(const FileDialog&) override { return ++asked, std::string(); }
    std::string chooseDirectory(const std::string&, const std::string&) override { return ++asked, std::string(); }
    std::optional<std::string> inputText(const std::string&, const std::string&, const std::string&) override {
        return ++asked, std::nullopt;
    }
    int unsavedFiles(const std::vector<std::string>&, const std::string&) override { return ++asked, kNo; }
};

PictureElement pictureAt(int i, const std::string& path) {
    PictureElement e;
    e.left = std::int16_t(kGap + (i % kColumns) * (kBoxW + kGap));
    e.top = std::int16_t(kGap + (i / kColumns) * (kBoxH + kGap));
    e.width = kBoxW;
    e.height = kBoxH;
    e.path = path;
    CImageInfo info;
    if (info.ReadImageInfo(path)) {
        e.pictureWidth = info.Width;
        e.pictureHeight = info.Height;
    }
    e.proportional = kTrue;
    return e;
}

// An album of two pages: an empty one that opens with the window, and the
// photo page the bench opens.
bool writeAlbum(const std::string& dir, const std::vector<std::string>& pictures) {
    AlbumRecord album;
    ladeStandards(album, dir);
    album.title = "Bench";
    PageRecord empty = album.pageDefaults;
    PageRecord photos = album.pageDefaults;
    for (std::size_t i = 0; i < pictures.size(); ++i) photos.pictures.add() = pictureAt(int(i), pictures[i]);
    int n = 0;
    for (PageRecord* page : {&empty, &photos}) {
        ReihenfolgePruefen(*page);
        page->title = n++ == 0 ? "Start" : "Fotos";
        if (!writePageFile(dir + page->title + ".apg", *page).ok()) return false;
        album.pages.add() = PageEntry{page->title, page->title + ".apg", dir, 0};
        ++album.pageCount;
    }
    prepareAlbumSave(album, dir + "Bench.apr");
    return writeAlbumFile(dir + "Bench.apr", album).ok();
}

// Notes when the canvas has painted with every picture in.
class DrawnWatch : public QObject {
public:
    DrawnWatch(editor::PageCanvas* canvas, std::function<void()> done) : canvas_(canvas), done_(std::move(done)) {
        canvas->installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == canvas_ && event->type() == QEvent::Paint && !canvas_->picturesLoading() && !fired_) {
            fired_ = true;
            QTimer::singleShot(0, this, done_);  // runs once this paint is over
        }
        return false;
    }

private:
    editor::PageCanvas* canvas_;
    std::function<void()> done_;
    bool fired_ = false;
};

qint64 threadCpuNs() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return qint64(t.tv_sec) * 1000000000 + t.tv_nsec;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: bench_editor WORKDIR PICTURE...\n");
        return 2;
    }
    QApplication app(argc, argv);
    const std::string work = std::filesystem::absolute(argv[1]).string() + "/";
    const std::string home = work + "home/", albumDir = work + "album/";
    std::filesystem::remove_all(home);
    std::filesystem::create_directories(albumDir);
    qputenv("BRINDLESEE_HOME", QByteArray::fromStdString(home));
    seedProgramDirectory(home, installedResourceDirectory());
    std::vector<std::string> pictures;
    for (int i = 2; i < argc && pictures.size() < 24; ++i) pictures.push_back(std::filesystem::absolute(argv[i]).string());
    if (!writeAlbum(albumDir, pictures)) return 1;

    QuietPrompter prompter;
    IniSettingsStore settings(home + "settings.ini");
    shell::MainWindow window(home, prompter, settings);
    window.MDIForm_Load({albumDir + "Bench.apr"}, {});
    window.resize(1600, 1000);
    window.show();

    // The longest gap between ticks of a 1 ms timer is the longest stall.
    QElapsedTimer clock;
    qint64 lastTick = -1, stall = 0, stallAt = 0, opened = 0;
    bool measuring = false;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    // Busy: the most CPU time the GUI thread spent between two ticks, which
    // tells its own work from waiting for a core on a loaded machine.
    qint64 lastCpu = 0, busy = 0;
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        const qint64 now = clock.nsecsElapsed(), cpu = threadCpuNs();
        if (measuring && lastTick >= 0) {
            if (now - lastTick > stall) {
                stall = now - lastTick;
                stallAt = lastTick - opened;
            }
            busy = std::max(busy, cpu - lastCpu);
        }
        lastTick = now;
        lastCpu = cpu;
    });
    clock.start();
    ticker.start(1);

    qint64 drawn = 0, openCall = 0, openCpu = 0;
    std::unique_ptr<DrawnWatch> watch;
    // Settle the window first, then open the photo page.
    QTimer::singleShot(300, [&] {
        measuring = true;
        opened = clock.nsecsElapsed();
        const qint64 cpu0 = threadCpuNs();
        window.session().SeiteOeffnen(2, "", false);
        openCall = clock.nsecsElapsed() - opened;
        openCpu = threadCpuNs() - cpu0;
        editor::FrmNotePad* pad = window.activeNotePad();
        if (!pad || pad->caption() != "Fotos") {
            std::fprintf(stderr, "the photo page did not open\n");
            app.exit(1);
            return;
        }
        watch = std::make_unique<DrawnWatch>(pad->canvas(), [&] {
            drawn = clock.nsecsElapsed();
            app.quit();
        });
    });
    QTimer::singleShot(120000, [&] { app.exit(1); });
    if (app.exec() != 0 || drawn == 0) return 1;
    ticker.stop();

    rusage use{};
    getrusage(RUSAGE_SELF, &use);
    CImageInfo info;
    info.ReadImageInfo(pictures.front());
    const JpegScale scale = chooseJpegScale(info.Width, info.Height, kBoxW, kBoxH);
    std::printf("%.1f %.1f %.1f %d/%d %.1f\n", (drawn - opened) / 1e6, stall / 1e6, use.ru_maxrss / 1024.0,
                scale.num, scale.denom, busy / 1e6);
    // Where the longest stall began, for whoever looks into it.
    std::fprintf(stderr, "opening the page took %.1f ms (%.1f ms on the CPU); the longest stall began %.1f ms after\n",
                 openCall / 1e6, openCpu / 1e6, stallAt / 1e6);
    return prompter.asked == 0 ? 0 : 1;
}
