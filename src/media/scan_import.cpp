#include "media/scan_import.h"

#include <poll.h>
#include <sane/sane.h>
#include <sane/saneopts.h>

#include <array>
#include <cstring>
#include <thread>

#include "image/picture_io.h"

namespace brindle::media {
namespace {

using Clock = std::chrono::steady_clock;

// sane_init and sane_exit around one operation.
class SaneSession {
  public:
    SaneSession() { status_ = sane_init(nullptr, nullptr); }
    ~SaneSession() {
        if (status_ == SANE_STATUS_GOOD) sane_exit();
    }
    SaneSession(const SaneSession&) = delete;
    SaneSession& operator=(const SaneSession&) = delete;
    bool ok() const { return status_ == SANE_STATUS_GOOD; }
    SANE_Status status() const { return status_; }

  private:
    SANE_Status status_;
};

// An open device; cancels any scan still running before it closes.
class SaneDevice {
  public:
    explicit SaneDevice(SANE_Handle handle) : handle_(handle) {}
    ~SaneDevice() {
        if (!handle_) return;
        sane_cancel(handle_);
        sane_close(handle_);
    }
    SaneDevice(const SaneDevice&) = delete;
    SaneDevice& operator=(const SaneDevice&) = delete;
    SANE_Handle get() const { return handle_; }

  private:
    SANE_Handle handle_;
};

std::string text(const char* s) { return s ? s : ""; }

std::string startFailure(Language language, SANE_Status status) {
    return std::string(tr(language, "SANE lässt sich nicht starten: ", "SANE cannot be started: ")) +
           sane_strstatus(status);
}


std::string deviceError(Language language, SANE_Status status) {
    return std::string(tr(language, "Der Scanner meldet einen Fehler: ", "The scanner reports an error: ")) +
           sane_strstatus(status);
}

std::vector<ScanSource> devicesOf(const SANE_Device** list) {
    std::vector<ScanSource> out;
    for (int i = 0; list && list[i]; ++i)
        out.push_back({text(list[i]->name), text(list[i]->vendor), text(list[i]->model), text(list[i]->type)});
    return out;
}

// Sets the resolution option where the source has one; false when the
// source refuses the value.
bool setResolution(SANE_Handle handle, int dpi) {
    const SANE_Option_Descriptor* first = sane_get_option_descriptor(handle, 0);
    SANE_Int count = 0;
    if (!first || sane_control_option(handle, 0, SANE_ACTION_GET_VALUE, &count, nullptr) != SANE_STATUS_GOOD)
        return false;
    for (SANE_Int i = 1; i < count; ++i) {
        const SANE_Option_Descriptor* d = sane_get_option_descriptor(handle, i);
        if (!d || !d->name || std::strcmp(d->name, SANE_NAME_SCAN_RESOLUTION) != 0) continue;
        if (!SANE_OPTION_IS_ACTIVE(d->cap) || !SANE_OPTION_IS_SETTABLE(d->cap)) return false;
        SANE_Word value = d->type == SANE_TYPE_FIXED ? SANE_FIX(dpi) : dpi;
        if (d->type != SANE_TYPE_FIXED && d->type != SANE_TYPE_INT) return false;
        SANE_Int info = 0;
        return sane_control_option(handle, i, SANE_ACTION_SET_VALUE, &value, &info) == SANE_STATUS_GOOD;
    }
    return false;
}

bool report(const ScanRequest& request, int percent) {
    return !request.progress || request.progress(percent);
}

// Reads one frame into `assembler`. Returns an empty string on success,
// "cancel" when the user cancelled, else the message.
std::string readFrame(SANE_Handle handle, const ScanRequest& request, ScanAssembler& assembler,
                      Language language) {
    // Non-blocking reads let a stalled source be given up instead of
    // hanging the program; not every backend offers them.
    const bool nonBlocking = sane_set_io_mode(handle, SANE_TRUE) == SANE_STATUS_GOOD;
    SANE_Int fd = -1;
    if (nonBlocking && sane_get_select_fd(handle, &fd) != SANE_STATUS_GOOD) fd = -1;
    std::array<SANE_Byte, 64 * 1024> buffer{};
    Clock::time_point lastData = Clock::now();
    for (;;) {
        SANE_Int length = 0;
        const SANE_Status status = sane_read(handle, buffer.data(), static_cast<SANE_Int>(buffer.size()), &length);
        if (status == SANE_STATUS_EOF) break;
        if (status == SANE_STATUS_CANCELLED) return "cancel";
        if (status != SANE_STATUS_GOOD) return deviceError(language, status);
        if (length > 0) {
            if (!assembler.add(buffer.data(), static_cast<std::size_t>(length))) return assembler.error();
            lastData = Clock::now();
            if (!report(request, assembler.percent())) return "cancel";
            continue;
        }
        if (Clock::now() - lastData > request.stallTimeout)
            return tr(language, "Der Scanner antwortet nicht.", "The scanner does not answer.");
        if (!report(request, assembler.percent())) return "cancel";
        if (fd >= 0) {
            pollfd p{fd, POLLIN, 0};
            poll(&p, 1, 50);
        } else {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    if (!assembler.endFrame()) return assembler.error();
    return {};
}

// Runs every frame of one scan on an open device.
ScanResult readScan(SANE_Handle handle, const ScanRequest& request, Language language) {
    ScanAssembler assembler(language, request.limits);
    ScanResult result;
    while (!assembler.complete()) {
        const SANE_Status started = sane_start(handle);
        if (started == SANE_STATUS_CANCELLED) {
            result.cancelled = true;
            result.error = tr(language, "Der Scan wurde abgebrochen.", "The scan was cancelled.");
            return result;
        }
        if (started != SANE_STATUS_GOOD) {
            result.error = deviceError(language, started);
            return result;
        }
        SANE_Parameters p{};
        if (const SANE_Status s = sane_get_parameters(handle, &p); s != SANE_STATUS_GOOD) {
            result.error = deviceError(language, s);
            return result;
        }
        const ScanFrameFormat format{static_cast<int>(p.format), p.last_frame != SANE_FALSE, p.bytes_per_line,
                                     p.pixels_per_line, p.lines, p.depth};
        if (!assembler.beginFrame(format)) {
            result.error = assembler.error();
            return result;
        }
        const std::string why = readFrame(handle, request, assembler, language);
        if (why == "cancel") {
            result.cancelled = true;
            result.error = tr(language, "Der Scan wurde abgebrochen.", "The scan was cancelled.");
            return result;
        }
        if (!why.empty()) {
            result.error = why;
            return result;
        }
    }
    result.picture = assembler.picture();
    if (!result.picture)
        result.error = tr(language, "Für das Bild des Scanners reicht der Speicher nicht.",
                          "There is not enough memory for the scanner's picture.");
    report(request, 100);
    return result;
}

}  // namespace

ScanSourceList listScanSources(Language language) {
    ScanSourceList out;
    SaneSession session;
    if (!session.ok()) {
        out.error = startFailure(language, session.status());
        return out;
    }
    const SANE_Device** list = nullptr;
    if (sane_get_devices(&list, SANE_FALSE) == SANE_STATUS_GOOD) out.sources = devicesOf(list);
    return out;
}

ScanResult acquireScan(const ScanRequest& request, Language language) {
    ScanResult result;
    SaneSession session;
    if (!session.ok()) {
        result.error = startFailure(language, session.status());
        return result;
    }
    std::string name = request.device;
    if (name.empty()) {
        const SANE_Device** list = nullptr;
        if (sane_get_devices(&list, SANE_FALSE) == SANE_STATUS_GOOD && list && list[0]) name = text(list[0]->name);
        if (name.empty()) {
            result.error = noScannerMessage(language);
            return result;
        }
    }
    SANE_Handle raw = nullptr;
    const SANE_Status opened = sane_open(name.c_str(), &raw);
    if (opened != SANE_STATUS_GOOD || !raw) {
        result.error = std::string(tr(language, "Der Scanner \"", "The scanner \"")) + name +
                       tr(language, "\" lässt sich nicht öffnen: ", "\" cannot be opened: ") +
                       sane_strstatus(opened);
        return result;
    }
    SaneDevice device(raw);
    if (request.resolution > 0 && !setResolution(device.get(), request.resolution)) {
        result.error = std::string(tr(language, "Der Scanner nimmt die Auflösung ",
                                      "The scanner does not take the resolution ")) +
                       std::to_string(request.resolution) + tr(language, " dpi nicht an.", " dpi.");
        return result;
    }
    return readScan(device.get(), request, language);
}

ScanResult scanToFile(const ScanRequest& request, const std::string& path, Language language) {
    ScanResult result = acquireScan(request, language);
    if (!result) return result;
    const ImageStatus saved = SavePictureFile(result.picture, path, kScanQuality);
    if (!saved) {
        result.error = saved.message ? saved.message->text
                                     : std::string(tr(language, "Das Bild lässt sich nicht speichern: ",
                                                      "The picture cannot be saved: ")) + path;
        result.picture = {};
    }
    return result;
}

std::string noScannerMessage(Language language) {
    return tr(language, "Es wurde kein Scanner gefunden.", "No scanner was found.");
}

}  // namespace brindle::media
