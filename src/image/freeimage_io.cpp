#include "image/freeimage_io.h"

#include <FreeImage.h>
#include <dlfcn.h>
#include <sys/stat.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>

#include "image/file_stamp.h"

namespace brindle {
namespace {

// FreeImage reports through one global callback; each thread collects its
// own reader's complaints.
struct MessageSink {
    const ImageEnv* env = nullptr;
    std::string last;
};
thread_local MessageSink tlsSink;

void onFreeImageMessage(FREE_IMAGE_FORMAT fif, const char* message) {
    const char* format = fif == FIF_UNKNOWN ? "?" : FreeImage_GetFormatFromFIF(fif);
    tlsSink.last = message ? message : "";
    if (tlsSink.env)
        logLine(tlsSink.env->log,
                std::string("FreeImage (") + (format ? format : "?") + "): " + tlsSink.last);
}

// libtiff, underneath FreeImage, prints its complaints (unknown EXIF tags of
// perfectly good files, among others) to stderr unless given a handler. It
// is reached through the symbol table, as it is FreeImage's library, not ours.
void onTiffMessage(const char* module, const char* format, va_list args) {
    char text[512];
    std::vsnprintf(text, sizeof text, format, args);
    onFreeImageMessage(FIF_TIFF, (std::string(module ? module : "libtiff") + ": " + text).c_str());
}

void routeTiffMessages() {
    using Handler = void (*)(const char*, const char*, va_list);
    using SetHandler = Handler (*)(Handler);
    for (const char* name : {"TIFFSetErrorHandler", "TIFFSetWarningHandler"})
        if (auto set = reinterpret_cast<SetHandler>(dlsym(RTLD_DEFAULT, name))) set(onTiffMessage);
}

// The shared library initialises itself when loaded; only the callbacks are ours.
struct Session {
    explicit Session(const ImageEnv& env) {
        static std::once_flag once;
        std::call_once(once, [] {
            FreeImage_SetOutputMessage(onFreeImageMessage);
            routeTiffMessages();
        });
        tlsSink.env = &env;
        tlsSink.last.clear();
    }
    ~Session() { tlsSink.env = nullptr; }
    std::string lastMessage() const { return tlsSink.last; }
};

struct BitmapUnload {
    void operator()(FIBITMAP* b) const {
        if (b) FreeImage_Unload(b);
    }
};
using Bitmap = std::unique_ptr<FIBITMAP, BitmapUnload>;

void setError(std::string* error, const std::string& text) {
    if (error) *error = text;
}

// Any FreeImage bitmap to 24-bit rows; both keep rows bottom-up in blue,
// green, red order.
bool toDib(FIBITMAP* source, cDIBSection& dib) {
    const FREE_IMAGE_TYPE type = FreeImage_GetImageType(source);
    Bitmap standard;
    if (type != FIT_BITMAP && type != FIT_RGB16 && type != FIT_RGBA16) {
        standard.reset(FreeImage_ConvertToStandardType(source, TRUE));
        if (!standard) return false;
        source = standard.get();
    }
    Bitmap rgb(FreeImage_ConvertTo24Bits(source));
    if (!rgb) return false;
    const int w = static_cast<int>(FreeImage_GetWidth(rgb.get()));
    const int h = static_cast<int>(FreeImage_GetHeight(rgb.get()));
    if (!dib.Create(w, h)) return false;
    for (int y = 0; y < h; ++y)
        std::memcpy(dib.rowBits(y), FreeImage_GetScanLine(rgb.get(), y),
                    static_cast<std::size_t>(w) * 3);
    return true;
}

// Reads the header only (where the format's reader can) and refuses sizes
// that no real file of this length holds, before FreeImage allocates the
// pixels. Readers that cannot stop at the header give the whole picture,
// which is then used as it is.
Bitmap loadChecked(FREE_IMAGE_FORMAT fif, const std::string& path, std::string* error) {
    Bitmap head(FreeImage_Load(fif, path.c_str(), FIF_LOAD_NOPIXELS));
    if (!head) return head;
    if (FreeImage_HasPixels(head.get())) return head;
    const long long pixels = static_cast<long long>(FreeImage_GetWidth(head.get())) * FreeImage_GetHeight(head.get());
    struct stat st {};
    const long long fileBytes = ::stat(path.c_str(), &st) == 0 ? st.st_size : 0;
    // No compression here turns a byte into more than 65536 bytes of
    // pixels, not even a fax page; and no album picture has 268 megapixels.
    if (pixels <= 0 || pixels > (1LL << 28) || pixels * 3 > fileBytes * 65536) {
        setError(error, "implausible picture size");
        return {};
    }
    return Bitmap(FreeImage_Load(fif, path.c_str(), 0));
}

}  // namespace

bool freeImageSingleRead(const std::string& path, cDIBSection& dib, const ImageEnv& env,
                         std::string* error) {
    Session session(env);
    const FREE_IMAGE_FORMAT fif = FreeImage_GetFileType(path.c_str(), 16);
    if (fif == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(fif))
        return setError(error, "unknown file type"), false;
    std::string why;
    Bitmap bitmap = loadChecked(fif, path, &why);
    if (!bitmap) return setError(error, why.empty() ? session.lastMessage() : why), false;
    if (!toDib(bitmap.get(), dib)) return setError(error, "cannot convert the picture"), false;
    return true;
}

bool freeImageMultiPageRead(const std::string& rawPath, cDIBSection& dib, const ImageEnv& env) {
    Session session(env);
    const auto first = rawPath.find_first_not_of(" \t");
    const std::string path =
        first == std::string::npos
            ? ""
            : rawPath.substr(first, rawPath.find_last_not_of(" \t") - first + 1);
    if (path.empty()) {
        logLine(env.log, "[FreeImage_MultiPage_Load] No file specified to load");
        return false;
    }
    if (!fileExists(path)) {
        logLine(env.log, "[FreeImage_MultiPage_Load] File not found");
        return false;
    }
    const FREE_IMAGE_FORMAT fif = FreeImage_GetFileType(path.c_str(), 16);
    if (fif == FIF_UNKNOWN) {
        logLine(env.log,
                "[FreeImage_MultiPage_Load] Unable to determine the file type of the specified "
                "multipage bitmap");
        return false;
    }
    if (!loadChecked(fif, path, nullptr)) return false;  // page 1's header first
    FIMULTIBITMAP* multi = FreeImage_OpenMultiBitmap(fif, path.c_str(), FALSE, TRUE, TRUE, 0);
    if (!multi) return false;
    bool ok = false;
    if (FreeImage_GetPageCount(multi) > 0) {
        // Only the first page is shown; the others are not even cloned.
        if (FIBITMAP* page = FreeImage_LockPage(multi, 0)) {
            ok = toDib(page, dib);
            FreeImage_UnlockPage(multi, page, FALSE);
        }
    }
    FreeImage_CloseMultiBitmap(multi, 0);
    return ok;
}

bool platformRead(const std::string& path, PlatformFormat format, cDIBSection& dib,
                  const ImageEnv& env, std::string* error) {
    Session session(env);
    FREE_IMAGE_FORMAT fif = FIF_BMP;
    switch (format) {
        case PlatformFormat::Bmp:
            fif = FIF_BMP;
            break;
        case PlatformFormat::Gif:
            fif = FIF_GIF;
            break;
        case PlatformFormat::Icon:
            fif = FIF_ICO;
            break;
        case PlatformFormat::Jpeg:
            fif = FIF_JPEG;
            break;
    }
    if (!fileExists(path)) return setError(error, "file not found"), false;
    if (!FreeImage_Validate(fif, path.c_str()))
        return setError(error, std::string("not a ") + FreeImage_GetFormatFromFIF(fif) + " file"),
               false;
    std::string why;
    Bitmap bitmap = loadChecked(fif, path, &why);
    if (!why.empty()) return setError(error, why), false;
    if (!bitmap)
        return setError(error, session.lastMessage().empty() ? "cannot read the picture"
                                                             : session.lastMessage()),
               false;
    if (!toDib(bitmap.get(), dib)) return setError(error, "cannot convert the picture"), false;
    return true;
}

bool freeImageSave(const cDIBSection& dib, const std::string& path, int format,
                   std::string* error) {
    if (dib.empty()) return setError(error, "no picture"), false;
    if (format != kFreeImagePng && format != kFreeImageTiff)
        return setError(error, "unsupported format"), false;
    ImageEnv quiet;
    Session session(quiet);
    Bitmap bitmap(FreeImage_Allocate(dib.Width(), dib.Height(), 24, FI_RGBA_RED_MASK,
                                     FI_RGBA_GREEN_MASK, FI_RGBA_BLUE_MASK));
    if (!bitmap) return setError(error, "out of memory"), false;
    for (int y = 0; y < dib.Height(); ++y)
        std::memcpy(FreeImage_GetScanLine(bitmap.get(), y), dib.rowBits(y),
                    static_cast<std::size_t>(dib.Width()) * 3);
    FIMEMORY* memory = FreeImage_OpenMemory();
    bool ok =
        FreeImage_SaveToMemory(static_cast<FREE_IMAGE_FORMAT>(format), bitmap.get(), memory, 0);
    BYTE* bytes = nullptr;
    DWORD size = 0;
    if (ok) ok = FreeImage_AcquireMemory(memory, &bytes, &size);
    if (!ok)
        setError(error, session.lastMessage().empty() ? "cannot encode the picture"
                                                      : session.lastMessage());
    if (ok) ok = writeBytesAtomic(path, bytes, size, error);
    FreeImage_CloseMemory(memory);
    return ok;
}

}  // namespace brindle
