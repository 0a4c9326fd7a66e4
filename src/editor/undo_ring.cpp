#include "editor/undo_ring.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>

namespace brindle::editor {

int UndoRing::advance() {
    if (pos == last) ++last;
    ++pos;
    if (pos > kUndoSlots - 1) pos = 1;
    last = pos;
    if (first == pos) ++first;  // never true: first stays 0 (kept as it always was)
    return pos;
}

void UndoRing::stepBack() {
    --pos;
    if (pos < 1) pos = first > 0 ? kUndoSlots - 1 : 0;
}

void UndoRing::stepForward() {
    ++pos;
    if (pos > kUndoSlots - 1) pos = 1;
}

void ensureParentDirectory(const std::string& path) {
    std::error_code ec;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ec);
}

std::string snapshotFileName(const std::string& programDirectory, int undoSlot) {
    static std::atomic<unsigned> serial{0};
    using namespace std::chrono;
    const auto now = system_clock::now();
    const std::time_t t = system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&t, &local);
    const double seconds = local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec +
                           double(duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000) / 1000;
    char buf[96];
    std::snprintf(buf, sizeof buf, "brind%d%.3f-%u-%d.tmp", local.tm_mday, seconds, serial++, undoSlot);
    return programDirectory + "Temp/" + buf;
}

}  // namespace brindle::editor
