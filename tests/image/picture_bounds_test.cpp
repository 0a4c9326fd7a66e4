// What pictures from outside may not do: claim sizes that exhaust memory,
// block on a FIFO, hide the real reason they cannot be read. And what they
// may: BMP files of every header version, 16-bit samples, saves over links.
#include <FreeImage.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <cstring>

#include "image/bmp_reader.h"
#include "image/file_stamp.h"
#include "image/gif_writer.h"
#include "image/picture_guard.h"
#include "image/picture_io.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

class PictureBounds : public TempHomeTest {
  protected:
    ImageEnv english() const { return {Language::English, {}, true}; }
    std::string loadMessage(const std::string& file, const std::string& cause) const {
        return "Loading of the picture " + path(file) + " fault! \r\n\r\nDescription: " + cause +
               "\r\n\r\nSource: Brindlesee";
    }
    cDIBSection loadFile(const std::string& name) {
        PictureFile f = LoadPictureFile(path(name), english());
        EXPECT_TRUE(f.picture) << name << ": " << (f.message ? f.message->text : "");
        return f.picture ? *f.picture.Handle() : cDIBSection{};
    }
    struct Run {
        int status = -1;
        std::string err;
    };
    // brindlesee-cli in a child whose memory is limited to 1.5 GB.
    // The alarm only ends a child that hangs; the test then fails.
    Run cliUnderMemoryLimit(const std::vector<std::string>& args) {
        const std::string errFile = path("err.txt");
        const pid_t pid = ::fork();
        if (pid == 0) {
#if defined(__SANITIZE_ADDRESS__)
            // The sanitizer reserves terabytes of shadow address space, so
            // the limit is on resident memory instead.
            const char* had = ::getenv("ASAN_OPTIONS");
            const std::string options = std::string(had ? had : "") + ":hard_rss_limit_mb=1536";
            ::setenv("ASAN_OPTIONS", options.c_str(), 1);
#else
            const rlimit limit{1536ull << 20, 1536ull << 20};
            ::setrlimit(RLIMIT_AS, &limit);
#endif
            ::alarm(60);
            const int fd = ::open(errFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            ::dup2(fd, 2);
            std::vector<char*> argv{const_cast<char*>(BRINDLESEE_CLI)};
            for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
            argv.push_back(nullptr);
            ::execv(BRINDLESEE_CLI, argv.data());
            ::_exit(127);
        }
        int raw = 0;
        ::waitpid(pid, &raw, 0);
        Run r;
        r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -WTERMSIG(raw);
        r.err = readBytes("err.txt");
        return r;
    }
};

std::string oneLine(const std::string& message) {
    std::string out;
    for (char c : message)
        if (c == '\n') {
            if (!out.empty() && out.back() != ' ') out += ' ';
        } else if (c != '\r') {
            out += c;
        }
    return out;
}

std::uint32_t crc(const std::string& s) {
    return static_cast<std::uint32_t>(
        ::crc32(0, reinterpret_cast<const Bytef*>(s.data()), static_cast<uInt>(s.size())));
}

void chunk(Bytes& png, const std::string& type, const std::string& data) {
    png.u32be(static_cast<std::uint32_t>(data.size())).text(type).append(data);
    png.u32be(crc(type + data));
}

// A PNG of width x height RGB pixels, all black: every row is a filter byte
// and zeros, which deflate shrinks about a thousand times.
std::string pngBomb(int width, int height) {
    Bytes ihdr;
    ihdr.u32be(width).u32be(height).u8(8).u8(2).u8(0).u8(0).u8(0);
    z_stream z{};
    deflateInit(&z, 9);
    std::string row(static_cast<std::size_t>(width) * 3 + 1, '\0'), out;
    std::vector<unsigned char> buffer(1 << 16);
    for (int y = 0; y < height; ++y) {
        z.next_in = reinterpret_cast<Bytef*>(row.data());
        z.avail_in = static_cast<uInt>(row.size());
        const int flush = y + 1 == height ? Z_FINISH : Z_NO_FLUSH;
        do {
            z.next_out = buffer.data();
            z.avail_out = static_cast<uInt>(buffer.size());
            deflate(&z, flush);
            out.append(reinterpret_cast<char*>(buffer.data()), buffer.size() - z.avail_out);
        } while (z.avail_out == 0);
    }
    deflateEnd(&z);
    Bytes png;
    png.u8(137).text("PNG").u8(13).u8(10).u8(26).u8(10);
    chunk(png, "IHDR", ihdr.str());
    chunk(png, "IDAT", out);
    chunk(png, "IEND", "");
    return png.str();
}

TEST_F(PictureBounds, BombsAreRefusedWithTheLoadMessageUnderAMemoryLimit) {
    // GIF: a 65535 x 65535 screen and image in 35 bytes.
    Bytes gif;
    gif.text("GIF89a").u16(65535).u16(65535).u8(0).u8(0).u8(0);
    gif.u8(0x2C).u16(0).u16(0).u16(65535).u16(65535).u8(0).u8(2).u8(2).u8(0x4C).u8(0x01);
    gif.u8(0).u8(0x3B);
    while (gif.size() < 35) gif.u8(0);
    writeBytes("bomb.gif", gif.str());
    // IFF: a bitmap header of 65535 x 65535 at 24 planes, and a body that
    // promises the rows, in 78 bytes.
    Bytes bmhd;
    bmhd.u16be(65535).u16be(65535).u16be(0).u16be(0).u8(24).u8(0).u8(1).u8(0).u16be(0);
    bmhd.u8(1).u8(1).u16be(65535).u16be(65535);
    Bytes iff;
    iff.text("FORM").u32be(70).text("ILBM").text("BMHD").u32be(20).append(bmhd.str());
    iff.text("BODY").u32be(30).fill(30, 0);
    writeBytes("bomb.iff", iff.str());
    // PNG: 10000 x 10000 pixels (300 MB) deflated into a few hundred KB.
    const std::string png = pngBomb(10000, 10000);
    ASSERT_LT(png.size(), 1u << 20);
    writeBytes("bomb.png", png);
    for (const char* file : {"bomb.gif", "bomb.iff", "bomb.png"}) {
        SCOPED_TRACE(file);
        const Run r = cliUnderMemoryLimit({"convert", path(file), path("out.bmp")});
        EXPECT_EQ(r.status, 1);
        EXPECT_NE(r.err.find("Loading of the picture " + path(file) + " fault! "), std::string::npos)
            << r.err;
        EXPECT_FALSE(fileExists(path("out.bmp")));
        // The same in process: refused from the header, with the message.
        PictureHolder holder;
        int w = 0, h = 0;
        const ImageStatus s = Loadpicture(holder, path(file), w, h, 0, english());
        EXPECT_FALSE(s.ok);
        ASSERT_TRUE(s.message);
        EXPECT_EQ(s.message->title, "Fehler");
    }
    std::string why;
    EXPECT_FALSE(pictureSizeAllowed(png, &why));
    EXPECT_EQ(why, "the picture claims more pixels than the file can hold");
    EXPECT_FALSE(pictureSizeAllowed(gif.str(), &why));
    EXPECT_EQ(why, "the picture is too large");
}

TEST_F(PictureBounds, FifosDevicesAndFoldersAreRefusedAtOnceWithTheReadError) {
    ASSERT_EQ(::mkfifo(path("pipe.jpg").c_str(), 0600), 0);
    ASSERT_EQ(::mkfifo(path("pipe.png").c_str(), 0600), 0);
    ASSERT_EQ(::mkdir(path("folder.png").c_str(), 0700), 0);
    ASSERT_EQ(::symlink("/dev/zero", path("zero.gif").c_str()), 0);
    const std::pair<const char*, const char*> cases[] = {{"pipe.jpg", "not a regular file"},
                                                         {"pipe.png", "not a regular file"},
                                                         {"folder.png", "Is a directory"},
                                                         {"zero.gif", "not a regular file"}};
    for (auto [file, cause] : cases) {
        SCOPED_TRACE(file);
        PictureHolder holder;
        int w = 0, h = 0;
        const ImageStatus s = Loadpicture(holder, path(file), w, h, 0, english());
        EXPECT_FALSE(s.ok);
        ASSERT_TRUE(s.message);
        EXPECT_EQ(s.message->text, loadMessage(file, cause));
        const PictureFile f = LoadPictureFile(path(file), english());
        ASSERT_TRUE(f.message);
        EXPECT_EQ(f.message->text, loadMessage(file, cause));
        const Run r = cliUnderMemoryLimit({"convert", path(file), path("out.png")});
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err, "brindlesee-cli: " + oneLine(loadMessage(file, cause)) + "\n");
    }
    // A name that is not there still loads nothing, quietly.
    PictureHolder holder;
    int w = 0, h = 0;
    EXPECT_FALSE(Loadpicture(holder, path("none.jpg"), w, h).message);
}

TEST_F(PictureBounds, AnUnreadablePictureNamesPermissionDenied) {
    if (::geteuid() != 0) GTEST_SKIP() << "needs root to drop to another user";
    ASSERT_TRUE(SaveDIBFile(smoothPicture(8, 8), path("secret.jpg"), 90).ok);
    ASSERT_TRUE(SaveDIBFile(smoothPicture(8, 8), path("secret.png"), 90).ok);
    for (const char* file : {"secret.jpg", "secret.png"}) {
        ASSERT_EQ(::chmod(path(file).c_str(), 0600), 0);
        ASSERT_EQ(::chmod(home().c_str(), 0755), 0);
    }
    int pipeFds[2];
    ASSERT_EQ(::pipe(pipeFds), 0);
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::close(pipeFds[0]);
        if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(2);
        for (const char* file : {"secret.jpg", "secret.png"}) {
            PictureHolder holder;
            int w = 0, h = 0;
            const ImageStatus s = Loadpicture(holder, path(file), w, h, 0, english());
            const std::string text = (s.message ? s.message->text : "no message") + "\n";
            if (::write(pipeFds[1], text.data(), text.size()) < 0) ::_exit(3);
        }
        ::_exit(0);
    }
    ::close(pipeFds[1]);
    std::string got;
    char buffer[512];
    for (ssize_t n; (n = ::read(pipeFds[0], buffer, sizeof buffer)) > 0;) got.append(buffer, n);
    ::close(pipeFds[0]);
    int raw = 0;
    ::waitpid(pid, &raw, 0);
    ASSERT_TRUE(WIFEXITED(raw) && WEXITSTATUS(raw) == 0) << raw;
    EXPECT_EQ(got, loadMessage("secret.jpg", "Permission denied") + "\n" +
                       loadMessage("secret.png", "Permission denied") + "\n");
}

// A BMP file byte by byte: file header, an info header of `infoSize` bytes
// (masks in it from 52 bytes on), then the rows as given.
std::string bmpFile(std::uint32_t infoSize, int width, int height, int bits,
                    std::uint32_t compression, std::array<std::uint32_t, 4> masks,
                    const std::string& palette, const std::string& rows) {
    Bytes info;
    info.u32(infoSize).u32(static_cast<std::uint32_t>(width)).u32(static_cast<std::uint32_t>(height));
    info.u16(1).u16(bits).u32(compression).u32(static_cast<std::uint32_t>(rows.size()));
    info.u32(2835).u32(2835).u32(static_cast<std::uint32_t>(palette.size() / 4)).u32(0);
    for (std::uint32_t m : masks) info.u32(m);
    info.u32(0x73524742);  // "sRGB"
    while (info.size() < infoSize) info.u8(0);
    const std::string header = info.str().substr(0, infoSize);
    const std::uint32_t offset = static_cast<std::uint32_t>(14 + infoSize + palette.size());
    Bytes file;
    file.text("BM").u32(offset + static_cast<std::uint32_t>(rows.size())).u32(0).u32(offset);
    file.append(header).append(palette).append(rows);
    return file.str();
}

TEST_F(PictureBounds, BmpWithEveryInfoHeaderVersionLoads) {
    // 2 x 2: top row red, blue; bottom row green, white.
    const cDIBSection expected =
        makeDib({{{0, 0, 255}, {255, 0, 0}}, {{0, 255, 0}, {255, 255, 255}}});
    Bytes rows24;  // bottom-up, padded to 4 bytes
    rows24.u8(0).u8(255).u8(0).u8(255).u8(255).u8(255).u16(0);
    rows24.u8(0).u8(0).u8(255).u8(255).u8(0).u8(0).u16(0);
    Bytes rows32;  // top-down, blue-green-red-alpha as the usual masks say
    rows32.u32(0xFFFF0000).u32(0xFF0000FF).u32(0xFF00FF00).u32(0xFFFFFFFF);
    Bytes rows565;  // top-down, red 5, green 6, blue 5
    rows565.u16(0xF800).u16(0x001F).u16(0x07E0).u16(0xFFFF);
    Bytes rows8;  // bottom-up, indices into a four-colour table
    rows8.u8(2).u8(3).u16(0).u8(0).u8(1).u16(0);
    Bytes palette;
    palette.u32(0x00FF0000).u32(0x000000FF).u32(0x0000FF00).u32(0x00FFFFFF);
    const std::array<std::uint32_t, 4> argb{0x00FF0000, 0x0000FF00, 0x000000FF, 0xFF000000};
    const std::array<std::uint32_t, 4> rgb565{0xF800, 0x07E0, 0x001F, 0};
    struct Case {
        const char* name;
        std::string bytes;
    } cases[] = {
        {"v3-24.bmp", bmpFile(40, 2, 2, 24, 0, {}, "", rows24.str())},
        {"v4-24.bmp", bmpFile(108, 2, 2, 24, 0, {}, "", rows24.str())},
        {"v5-24.bmp", bmpFile(124, 2, 2, 24, 0, {}, "", rows24.str())},
        {"v4-32.bmp", bmpFile(108, 2, -2, 32, 3, argb, "", rows32.str())},
        {"v5-32.bmp", bmpFile(124, 2, -2, 32, 3, argb, "", rows32.str())},
        {"v5-32-plain.bmp", bmpFile(124, 2, -2, 32, 0, {}, "", rows32.str())},
        {"v5-16.bmp", bmpFile(124, 2, -2, 16, 3, rgb565, "", rows565.str())},
        {"v5-8.bmp", bmpFile(124, 2, 2, 8, 0, {}, palette.str(), rows8.str())},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        writeBytes(c.name, c.bytes);
        EXPECT_TRUE(sameImage(expected, loadFile(c.name)));
    }
    // Bit fields after a 40-byte header, 5-5-5 in 16 bits: 31 of 31 is 255.
    Bytes masks;
    masks.u32(0x7C00).u32(0x03E0).u32(0x001F);
    Bytes rows555;
    rows555.u16(0x7C00).u16(0x001F).u16(0x03E0).u16(0x7FFF);
    std::string v3 = bmpFile(40, 2, -2, 16, 3, {}, masks.str(), rows555.str());
    writeBytes("v3-16.bmp", v3);
    EXPECT_TRUE(sameImage(expected, loadFile("v3-16.bmp")));
}

TEST_F(PictureBounds, CutAndLyingBmpFilesAreRefused) {
    Bytes rows;
    rows.fill(16, 0);
    const std::string good = bmpFile(124, 2, -2, 32, 3, {0xFF0000, 0xFF00, 0xFF, 0}, "", rows.str());
    cDIBSection dib;
    EXPECT_EQ(decodeBmp(good, dib), BmpResult::Ok);
    EXPECT_EQ(decodeBmp(good.substr(0, good.size() - 1), dib), BmpResult::NotBmp);
    EXPECT_EQ(decodeBmp(good.substr(0, 60), dib), BmpResult::NotBmp);
    // A palette index past the table shows black instead of reading past it.
    Bytes one;
    one.u8(200).u8(0).u16(0);
    Bytes palette;
    palette.u32(0x00FFFFFF);
    EXPECT_EQ(decodeBmp(bmpFile(40, 1, 1, 8, 0, {}, palette.str(), one.str()), dib), BmpResult::Ok);
    EXPECT_EQ(pixelAt(dib, 0, 0), (Bgr{0, 0, 0}));
    // Run-length files go on to FreeImage; bit fields need 16 or 32 bits.
    EXPECT_EQ(decodeBmp(bmpFile(40, 1, 1, 8, 1, {}, palette.str(), one.str()), dib),
              BmpResult::Unsupported);
    EXPECT_EQ(decodeBmp(bmpFile(40, 1, 1, 24, 3, {}, "", one.str()), dib), BmpResult::NotBmp);
    // A header claiming more rows than the file holds.
    EXPECT_EQ(decodeBmp(bmpFile(40, 20000, 20000, 24, 0, {}, "", rows.str()), dib),
              BmpResult::NotBmp);
}

// 16-bit samples as FreeImage writes them into PNG and TIFF.
void saveSixteenBit(FREE_IMAGE_TYPE type, FREE_IMAGE_FORMAT format, const std::string& path) {
    FIBITMAP* b = FreeImage_AllocateT(type, 3, 1);
    ASSERT_TRUE(b);
    auto* px = reinterpret_cast<std::uint16_t*>(FreeImage_GetScanLine(b, 0));
    const std::uint16_t values[3] = {0, 1000, 40000};
    for (int x = 0; x < 3; ++x) {
        if (type == FIT_UINT16) {
            px[x] = values[x];
        } else {  // red, green, blue
            px[3 * x] = values[x];
            px[3 * x + 1] = static_cast<std::uint16_t>(values[x] / 2);
            px[3 * x + 2] = 65535;
        }
    }
    ASSERT_TRUE(FreeImage_Save(format, b, path.c_str(), 0));
    FreeImage_Unload(b);
}

TEST_F(PictureBounds, SixteenBitPicturesKeepTheirTones) {
    // The nearest 8-bit value: (v x 255 + 32767) / 65535; 40000 is 156, not
    // stretched to white because it is the brightest pixel.
    const cDIBSection grey = makeDib({{{0, 0, 0}, {4, 4, 4}, {156, 156, 156}}});
    const cDIBSection colour = makeDib({{{255, 0, 0}, {255, 2, 4}, {255, 78, 156}}});
    saveSixteenBit(FIT_UINT16, FIF_PNG, path("grey.png"));
    saveSixteenBit(FIT_UINT16, FIF_TIFF, path("grey.tif"));
    saveSixteenBit(FIT_RGB16, FIF_PNG, path("colour.png"));
    saveSixteenBit(FIT_RGB16, FIF_TIFF, path("colour.tif"));
    EXPECT_TRUE(sameImage(grey, loadFile("grey.png")));
    EXPECT_TRUE(sameImage(grey, loadFile("grey.tif")));
    EXPECT_TRUE(sameImage(colour, loadFile("colour.png")));
    EXPECT_TRUE(sameImage(colour, loadFile("colour.tif")));
}

TEST_F(PictureBounds, SavesGoThroughLinksAndKeepTheModeForEveryType) {
    const cDIBSection dib = smoothPicture(24, 16);
    for (const char* ext : {".jpg", ".png", ".bmp", ".gif", ".tif"}) {
        SCOPED_TRACE(ext);
        const std::string real = path(std::string("real") + ext);
        const std::string link = path(std::string("link") + ext);
        writeBytes(std::string("real") + ext, "old");
        ASSERT_EQ(::chmod(real.c_str(), 0640), 0);
        ASSERT_EQ(::symlink(real.c_str(), link.c_str()), 0);
        if (std::string(ext) == ".gif") {
            ASSERT_TRUE(GIF::SaveGIF(dib, link, false, 0));
        } else {
            ASSERT_TRUE(SaveDIBFile(dib, link, 90).ok);
        }
        struct stat st {};
        ASSERT_EQ(::lstat(link.c_str(), &st), 0);
        EXPECT_TRUE(S_ISLNK(st.st_mode));
        ASSERT_EQ(::stat(real.c_str(), &st), 0);
        EXPECT_EQ(st.st_mode & 07777, 0640u);
        EXPECT_EQ(loadFile(std::string("real") + ext).Width(), 24);
    }
}

}  // namespace
}  // namespace brindle::test
