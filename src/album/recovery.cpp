#include "album/recovery.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "album/file_io.h"
#include "album/page_file.h"

namespace brindle {

namespace fs = std::filesystem;

namespace {

constexpr const char* kInfoHead = "Brindlesee recovery 1";
constexpr const char* kMarkerName = "running";
constexpr const char* kRunPrefix = "run-";
constexpr std::size_t kMaxInfoBytes = 16 * 1024;
constexpr std::size_t kMaxMarkerBytes = 256;

// Field 22 of /proc/<pid>/stat; 0 when the process is gone or /proc is missing.
std::uint64_t processStartTicks(long pid) {
    // /proc files report no size, so they are read as a stream of at most one line.
    std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
    std::string stat;
    if (!std::getline(in, stat) || stat.size() > 4096) return 0;
    // The command name in parentheses may hold blanks: count from its end.
    const std::size_t close = stat.rfind(')');
    if (close == std::string::npos) return 0;
    std::istringstream rest(stat.substr(close + 1));
    std::string field;
    for (int i = 3; i <= 22 && rest >> field; ++i)
        if (i == 22) return std::strtoull(field.c_str(), nullptr, 10);
    return 0;
}

std::string escapeValue(const std::string& v) {
    std::string out;
    for (char c : v) {
        if (c == '\\') out += "\\\\";
        else if (c == '\n') out += "\\n";
        else if (c == '\r') out += "\\r";
        else out += c;
    }
    return out;
}

bool unescapeValue(const std::string& v, std::string& out) {
    out.clear();
    for (std::size_t i = 0; i < v.size(); ++i) {
        if (v[i] != '\\') {
            out += v[i];
            continue;
        }
        if (++i == v.size()) return false;
        if (v[i] == '\\') out += '\\';
        else if (v[i] == 'n') out += '\n';
        else if (v[i] == 'r') out += '\r';
        else return false;
    }
    return true;
}

bool readMarker(const std::string& runDirectory, RunOwner& owner) {
    std::string text;
    if (!readWholeFile(runDirectory + kMarkerName, text, kMaxMarkerBytes).ok) return false;
    std::istringstream in(text);
    return static_cast<bool>(in >> owner.pid >> owner.startTicks) && owner.pid > 0;
}

bool isRunDirectory(const fs::directory_entry& e) {
    std::error_code ec;
    return e.is_directory(ec) && !e.is_symlink(ec) && e.path().filename().string().rfind(kRunPrefix, 0) == 0;
}

std::vector<std::string> runDirectories(const std::string& programDirectory) {
    std::vector<std::string> dirs;
    std::error_code ec;
    for (const auto& e : fs::directory_iterator(programDirectory + "Temp", ec))
        if (isRunDirectory(e)) dirs.push_back(e.path().string() + "/");
    std::sort(dirs.begin(), dirs.end());
    return dirs;
}

bool runAlive(const std::string& runDirectory) {
    RunOwner owner;
    return readMarker(runDirectory, owner) && runOwnerAlive(owner);
}

std::string infoPath(const std::string& dir, int slot) { return dir + "page" + std::to_string(slot) + ".info"; }
std::string pagePath(const std::string& dir, int slot) { return dir + "page" + std::to_string(slot) + ".apg"; }

// The checkpoints of one crashed run; broken ones are named in `broken`.
void collectCheckpoints(const std::string& dir, CrashedRuns& out) {
    std::error_code ec;
    for (const auto& e : fs::directory_iterator(dir, ec)) {
        if (e.path().extension() != ".info") continue;
        const std::string info = e.path().string();
        Checkpoint c;
        c.runDirectory = dir;
        std::string text;
        PageFile page;
        if (!readWholeFile(info, text, kMaxInfoBytes).ok || !decodeCheckpointInfo(text, c.info) ||
            e.path().filename().string() != "page" + std::to_string(c.info.slot) + ".info" ||
            !readPageFile(pagePath(dir, c.info.slot), PageRecord{}, page).ok()) {
            out.broken.push_back(info);
            continue;
        }
        c.page = std::move(page.page);
        c.writtenAt = e.last_write_time(ec).time_since_epoch().count();
        out.checkpoints.push_back(std::move(c));
    }
}

}  // namespace

RunOwner currentRunOwner() {
    RunOwner owner;
    owner.pid = static_cast<long>(::getpid());
    owner.startTicks = processStartTicks(owner.pid);
    return owner;
}

bool runOwnerAlive(const RunOwner& owner) {
    if (owner.pid <= 0) return false;
    if (::kill(static_cast<pid_t>(owner.pid), 0) != 0 && errno == ESRCH) return false;
    // Where /proc tells start times, a reused process id is not our program.
    const std::uint64_t ticks = processStartTicks(owner.pid);
    return ticks == 0 || owner.startTicks == 0 || ticks == owner.startTicks;
}

std::string encodeCheckpointInfo(const CheckpointInfo& info) {
    return std::string(kInfoHead) + "\nalbum=" + escapeValue(info.albumPath) + "\npage=" +
           escapeValue(info.pageFile) + "\ntitle=" + escapeValue(info.title) + "\nslot=" +
           std::to_string(info.slot) + "\n";
}

bool decodeCheckpointInfo(const std::string& text, CheckpointInfo& out) {
    std::istringstream in(text);
    std::string line;
    if (!std::getline(in, line) || line != kInfoHead) return false;
    CheckpointInfo info;
    bool album = false, page = false, title = false, slot = false;
    while (std::getline(in, line)) {
        const std::size_t eq = line.find('=');
        if (eq == std::string::npos) return false;
        const std::string key = line.substr(0, eq), raw = line.substr(eq + 1);
        std::string value;
        if (!unescapeValue(raw, value)) return false;
        if (key == "album") album = true, info.albumPath = value;
        else if (key == "page") page = true, info.pageFile = value;
        else if (key == "title") title = true, info.title = value;
        else if (key == "slot") {
            const auto r = std::from_chars(raw.data(), raw.data() + raw.size(), info.slot);
            if (r.ec != std::errc{} || r.ptr != raw.data() + raw.size() || info.slot < 1 || info.slot > 32767)
                return false;
            slot = true;
        } else {
            return false;
        }
    }
    if (!(album && page && title && slot)) return false;
    out = std::move(info);
    return true;
}

// ---------------------------------------------------------------- this run

RecoveryRun::RecoveryRun(std::string programDirectory) : programDirectory_(std::move(programDirectory)) {}

bool RecoveryRun::start() {
    static std::atomic<int> serial{0};  // window tests start several runs in one process
    const RunOwner me = currentRunOwner();
    directory_ = programDirectory_ + "Temp/" + kRunPrefix + std::to_string(me.pid) + "-" +
                 std::to_string(me.startTicks) + "-" + std::to_string(serial++) + "/";
    std::error_code ec;
    fs::create_directories(directory_, ec);
    const std::string marker = std::to_string(me.pid) + " " + std::to_string(me.startTicks) + "\n";
    started_ = !ec && writeFileAtomic(directory_ + kMarkerName, marker).ok;
    return started_;
}

void RecoveryRun::end() {
    if (!started_) return;
    removeRunDirectory(directory_);
    started_ = false;
}

bool RecoveryRun::writeCheckpoint(const CheckpointInfo& info, const PageRecord& page, std::string& error) {
    if (!started_) return false;
    std::string bytes;
    FileResult r = encodePage(page, bytes);
    if (!r.ok()) {
        error = r.detail;
        return false;
    }
    IoResult io = writeFileAtomic(pagePath(directory_, info.slot), bytes);
    if (io.ok) io = writeFileAtomic(infoPath(directory_, info.slot), encodeCheckpointInfo(info));
    error = io.error;
    return io.ok;
}

void RecoveryRun::removeCheckpoint(int slot) {
    if (!started_) return;
    std::error_code ec;
    fs::remove(infoPath(directory_, slot), ec);  // the info first: without it the page is no checkpoint
    fs::remove(pagePath(directory_, slot), ec);
}

bool RecoveryRun::hasCheckpoint(int slot) const {
    std::error_code ec;
    return started_ && fs::exists(infoPath(directory_, slot), ec);
}

// ---------------------------------------------------------------- after a crash

CrashedRuns findCrashedRuns(const std::string& programDirectory) {
    CrashedRuns out;
    for (const std::string& dir : runDirectories(programDirectory)) {
        if (runAlive(dir)) continue;
        out.runDirectories.push_back(dir);
        collectCheckpoints(dir, out);
    }
    std::sort(out.broken.begin(), out.broken.end());
    std::stable_sort(out.checkpoints.begin(), out.checkpoints.end(),
                     [](const Checkpoint& a, const Checkpoint& b) { return a.writtenAt > b.writtenAt; });
    return out;
}

bool otherRunAlive(const std::string& programDirectory, const std::string& ownRunDirectory) {
    for (const std::string& dir : runDirectories(programDirectory))
        if (dir != ownRunDirectory && runAlive(dir)) return true;
    return false;
}

void removeRunDirectory(const std::string& runDirectory) {
    std::error_code ec;
    fs::remove_all(runDirectory, ec);
}

void removeSnapshotsIfAlone(const std::string& programDirectory, const std::string& ownRunDirectory) {
    if (otherRunAlive(programDirectory, ownRunDirectory)) return;
    std::error_code ec;
    for (const auto& e : fs::directory_iterator(programDirectory + "Temp", ec))
        if (e.path().extension() == ".tmp" && e.is_regular_file(ec)) fs::remove(e.path(), ec);
}

}  // namespace brindle
