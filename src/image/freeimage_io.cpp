#include "image/freeimage_io.h"

#include <FreeImage.h>
#include <dlfcn.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>

#include "image/file_stamp.h"
#include "image/freeimage_pixels.h"
#include "image/picture_limits.h"

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
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
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

// FreeImage reads our bytes in memory: it never opens a path itself, so a
// FIFO or folder cannot block it and a read error is ours to report.
class Memory {
  public:
    explicit Memory(const std::string& bytes)
        : stream_(FreeImage_OpenMemory(
              reinterpret_cast<BYTE*>(const_cast<char*>(bytes.data())),
              static_cast<DWORD>(bytes.size()))) {}
    ~Memory() {
        if (stream_) FreeImage_CloseMemory(stream_);
    }
    Memory(const Memory&) = delete;
    Memory& operator=(const Memory&) = delete;
    // The stream at its start, as every FreeImage reader expects it.
    FIMEMORY* rewound() const {
        if (stream_) FreeImage_SeekMemory(stream_, 0, SEEK_SET);
        return stream_;
    }

  private:
    FIMEMORY* stream_;
};

FREE_IMAGE_FORMAT typeOf(const Memory& memory) {
    FIMEMORY* m = memory.rewound();
    return m ? FreeImage_GetFileTypeFromMemory(m, 16) : FIF_UNKNOWN;
}

// The size the full decode of `fif` would allocate, taken from the header.
// Formats whose readers cannot stop at the header are measured by our own
// header parsers; a format with neither is not read at all.
bool claimedSize(FREE_IMAGE_FORMAT fif, const std::string& bytes, const Memory& memory,
                 long long& w, long long& h, int& bits, std::string& why) {
    bits = 8;
    bool known = false;
    switch (fif) {
        case FIF_GIF:
            known = gifPictureSize(bytes, w, h);
            break;
        case FIF_IFF:
            known = iffPictureSize(bytes, w, h, bits);
            break;
        case FIF_SGI:
            known = sgiPictureSize(bytes, w, h, bits);
            break;
        case FIF_DDS:
            known = ddsPictureSize(bytes, w, h);
            bits = 32;
            break;
        case FIF_MNG:
            known = mngPictureSize(bytes, w, h);
            bits = 32;
            break;
        case FIF_KOALA:  // always the home computer's 320 x 200
            w = 320, h = 200, known = true;
            break;
        default:
            if (!FreeImage_FIFSupportsNoPixels(fif)) {
                why = "picture type without a size check";
                return false;
            }
            if (Bitmap head{FreeImage_LoadFromMemory(fif, memory.rewound(), FIF_LOAD_NOPIXELS)}) {
                w = FreeImage_GetWidth(head.get());
                h = FreeImage_GetHeight(head.get());
                bits = static_cast<int>(FreeImage_GetBPP(head.get()));
                known = true;
            }
    }
    if (!known) {
        why = tlsSink.last.empty() ? "cannot read the picture header" : tlsSink.last;
        return false;
    }
    return true;
}

bool sizeAllowed(FREE_IMAGE_FORMAT fif, const std::string& bytes, const Memory& memory,
                 std::string& why) {
    long long w = 0, h = 0;
    int bits = 24;
    return claimedSize(fif, bytes, memory, w, h, bits, why) &&
           plausiblePictureSize(w, h, bytes.size(), bits, &why);
}

// The full decode, only after the header's size was found acceptable.
Bitmap loadChecked(FREE_IMAGE_FORMAT fif, const std::string& bytes, const Memory& memory,
                   std::string* error) {
    std::string why;
    if (!sizeAllowed(fif, bytes, memory, why)) return setError(error, why), Bitmap{};
    Bitmap bitmap(FreeImage_LoadFromMemory(fif, memory.rewound(), 0));
    if (!bitmap)
        setError(error, tlsSink.last.empty() ? "cannot read the picture" : tlsSink.last);
    return bitmap;
}

bool readBytes(const std::string& path, std::string& bytes, std::string* error) {
    std::string why;
    if (readPictureBytes(path, bytes, &why)) return true;
    setError(error, why);
    return false;
}

FREE_IMAGE_FORMAT platformType(PlatformFormat format) {
    switch (format) {
        case PlatformFormat::Bmp:
            return FIF_BMP;
        case PlatformFormat::Gif:
            return FIF_GIF;
        case PlatformFormat::Icon:
            return FIF_ICO;
        case PlatformFormat::Jpeg:
            return FIF_JPEG;
    }
    return FIF_UNKNOWN;
}

}  // namespace

bool freeImageClaimedSize(const std::string& bytes, long long& width, long long& height,
                          int& bitsPerPixel, std::string* error) {
    ImageEnv quiet;
    Session session(quiet);
    Memory memory(bytes);
    const FREE_IMAGE_FORMAT fif = typeOf(memory);
    if (fif == FIF_UNKNOWN) return setError(error, "unknown file type"), false;
    std::string why;
    if (!claimedSize(fif, bytes, memory, width, height, bitsPerPixel, why))
        return setError(error, why), false;
    return true;
}

bool freeImageReadBytes(const std::string& bytes, cDIBSection& dib, const ImageEnv& env,
                        std::string* error) {
    Session session(env);
    Memory memory(bytes);
    const FREE_IMAGE_FORMAT fif = typeOf(memory);
    if (fif == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(fif))
        return setError(error, "unknown file type"), false;
    Bitmap bitmap = loadChecked(fif, bytes, memory, error);
    if (!bitmap) return false;
    if (!freeImageToDib(bitmap.get(), dib)) return setError(error, "cannot convert the picture"), false;
    return true;
}

bool freeImageSingleRead(const std::string& path, cDIBSection& dib, const ImageEnv& env,
                         std::string* error) {
    std::string bytes;
    return readBytes(path, bytes, error) && freeImageReadBytes(bytes, dib, env, error);
}

bool freeImageMultiPageReadBytes(const std::string& bytes, cDIBSection& dib, const ImageEnv& env,
                                 std::string* error) {
    Session session(env);
    Memory memory(bytes);
    const FREE_IMAGE_FORMAT fif = typeOf(memory);
    if (fif == FIF_UNKNOWN) {
        logLine(env.log,
                "[FreeImage_MultiPage_Load] Unable to determine the file type of the specified "
                "multipage bitmap");
        return setError(error, "unknown file type"), false;
    }
    std::string why;
    if (!sizeAllowed(fif, bytes, memory, why)) return setError(error, why), false;  // page 1
    FIMULTIBITMAP* multi = FreeImage_LoadMultiBitmapFromMemory(fif, memory.rewound(), 0);
    if (!multi) return false;
    bool ok = false;
    if (FreeImage_GetPageCount(multi) > 0) {
        // Only the first page is shown; the others are not even cloned.
        if (FIBITMAP* page = FreeImage_LockPage(multi, 0)) {
            ok = freeImageToDib(page, dib);
            FreeImage_UnlockPage(multi, page, FALSE);
        }
    }
    FreeImage_CloseMultiBitmap(multi, 0);
    return ok;
}

bool freeImageMultiPageRead(const std::string& rawPath, cDIBSection& dib, const ImageEnv& env) {
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
    std::string bytes;
    return readBytes(path, bytes, nullptr) && freeImageMultiPageReadBytes(bytes, dib, env);
}

bool platformReadBytes(const std::string& bytes, PlatformFormat format, cDIBSection& dib,
                       const ImageEnv& env, std::string* error) {
    Session session(env);
    Memory memory(bytes);
    const FREE_IMAGE_FORMAT fif = platformType(format);
    if (!FreeImage_ValidateFromMemory(fif, memory.rewound()))
        return setError(error, std::string("not a ") + FreeImage_GetFormatFromFIF(fif) + " file"),
               false;
    Bitmap bitmap = loadChecked(fif, bytes, memory, error);
    if (!bitmap) return false;
    if (!freeImageToDib(bitmap.get(), dib)) return setError(error, "cannot convert the picture"), false;
    return true;
}

bool platformRead(const std::string& path, PlatformFormat format, cDIBSection& dib,
                  const ImageEnv& env, std::string* error) {
    if (!fileExists(path)) return setError(error, "file not found"), false;
    std::string bytes;
    return readBytes(path, bytes, error) && platformReadBytes(bytes, format, dib, env, error);
}

bool freeImageEncode(const cDIBSection& dib, int format, std::string& out, std::string* error) {
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
    if (ok) out.assign(reinterpret_cast<const char*>(bytes), size);
    FreeImage_CloseMemory(memory);
    return ok;
}

bool freeImageSave(const cDIBSection& dib, const std::string& path, int format,
                   std::string* error) {
    std::string bytes;
    return freeImageEncode(dib, format, bytes, error) &&
           writeBytesAtomic(path, bytes.data(), bytes.size(), error);
}

}  // namespace brindle
