// Picture loading and saving: the key dispatch, its dead entries and
// fallbacks, the scaling rules and the messages.
#include "image/picture_io.h"

#include <FreeImage.h>
#include <gtest/gtest.h>
#include <turbojpeg.h>

#include <cstring>

#include "image/file_stamp.h"
#include "image/freeimage_io.h"
#include "image/jpeg_io.h"
#include "image/reduce.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

// Every test runs in its own temporary program directory.
class PictureDispatch : public TempHomeTest {};

const char* name(PictureReader r) {
    switch (r) {
        case PictureReader::None:
            return "none";
        case PictureReader::Jpeg:
            return "jpeg";
        case PictureReader::MultiPage:
            return "multi-page";
        case PictureReader::FreeImageSingle:
            return "FreeImage";
        case PictureReader::Platform:
            return "platform";
        case PictureReader::Icon:
            return "icon";
        case PictureReader::Metafile:
            return "metafile";
        case PictureReader::Tga:
            return "tga";
        case PictureReader::Pcx:
            return "pcx";
    }
    return "?";
}

TEST_F(PictureDispatch, ReadersAreChosenByTheLastFourCharacters) {
    struct Case {
        const char* path;
        PictureReader reader;
    } cases[] = {
        {"a.jpg", PictureReader::Jpeg},
        {"x.jpeg", PictureReader::Jpeg},
        {"C:\\Bilder\\Foto.JPG", PictureReader::Jpeg},
        {"a.tif", PictureReader::MultiPage},
        {"a.TIFF", PictureReader::MultiPage},
        {"a.mng", PictureReader::MultiPage},
        {"a.png", PictureReader::FreeImageSingle},
        {"a.wbmp", PictureReader::FreeImageSingle},
        {"a.pbm", PictureReader::FreeImageSingle},
        {"a.pgm", PictureReader::FreeImageSingle},
        {"a.ppm", PictureReader::FreeImageSingle},
        {"raw.mraw", PictureReader::FreeImageSingle},
        {"scanmraw", PictureReader::FreeImageSingle},
        {"a.psd", PictureReader::FreeImageSingle},
        {"a.jbig", PictureReader::FreeImageSingle},
        {"a.jbg", PictureReader::FreeImageSingle},
        {"a.ras", PictureReader::FreeImageSingle},
        {"a.iff", PictureReader::FreeImageSingle},
        {"a.lbm", PictureReader::FreeImageSingle},
        {"a.cut", PictureReader::FreeImageSingle},
        {"a.bmp", PictureReader::Platform},
        {"a.GIF", PictureReader::Platform},
        {"a.ico", PictureReader::Icon},
        {"a.wmf", PictureReader::Metafile},
        {"a.emf", PictureReader::Metafile},
        {"a.tga", PictureReader::Tga},
        {"a.pcx", PictureReader::Pcx},
        {"photo.PCD", PictureReader::None},
        {"a.koala", PictureReader::None},
        {"a.txt", PictureReader::None},
        {"a.jpe", PictureReader::None},
        {"jpg", PictureReader::None},
        {"", PictureReader::None},
    };
    for (const Case& c : cases) EXPECT_STREQ(name(readerFor(c.path)), name(c.reader)) << c.path;
}

TEST_F(PictureDispatch, PcdAndKoalaStandInTheTableButCanNeverMatch) {
    int dead = 0;
    for (const ReaderGroup& g : readerTable())
        for (const std::string& key : g.keys)
            if (key.size() != 4) {
                ++dead;
                EXPECT_TRUE(key == "*.pcd" || key == "*.koala") << key;
                EXPECT_EQ(g.reader, PictureReader::FreeImageSingle);
            }
    EXPECT_EQ(dead, 2);
    EXPECT_EQ(pictureKey("x.KOALA"), "oala");
    EXPECT_EQ(pictureKey("a.b"), "a.b");
}

TEST_F(PictureDispatch, WritersAndTheDibOnlyAmpersandKey) {
    struct Case {
        const char* path;
        PictureWriter picture, dib;
    } cases[] = {
        {"a.jpg", PictureWriter::Jpeg, PictureWriter::Jpeg},
        {"a.JPEG", PictureWriter::Jpeg, PictureWriter::Jpeg},
        {"a&jpg", PictureWriter::None, PictureWriter::Jpeg},
        {"a.bmp", PictureWriter::Bmp, PictureWriter::Bmp},
        {"a.png", PictureWriter::Png, PictureWriter::Png},
        {"a.tif", PictureWriter::Tiff, PictureWriter::Tiff},
        {"a.tiff", PictureWriter::Tiff, PictureWriter::Tiff},
        {"a.gif", PictureWriter::None, PictureWriter::None},
        {"a.pcx", PictureWriter::None, PictureWriter::None},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(writerFor(c.path, false), c.picture);
        EXPECT_EQ(writerFor(c.path, true), c.dib);
    }
}

class PictureFiles : public TempHomeTest {
  protected:
    ImageEnv env(Language lang = Language::English) {
        ImageEnv e;
        e.language = lang;
        e.log = [this](const std::string& line) { log.push_back(line); };
        return e;
    }
    cDIBSection load(const std::string& file, int w = 0, int h = 0, const ImageEnv& e = {}) {
        PictureHolder holder;
        ImageStatus r = Loadpicture(holder, path(file), w, h, 0, e);
        EXPECT_TRUE(r.ok) << file;
        return holder.picture ? *holder.picture.Handle() : cDIBSection{};
    }
    std::vector<std::string> log;
};

TEST_F(PictureFiles, LosslessFormatsComeBackExactly) {
    const cDIBSection dib = noisePicture(13, 7, 51);
    for (const char* file : {"n.png", "n.bmp", "n.tif", "n.tiff"}) {
        SCOPED_TRACE(file);
        ASSERT_TRUE(SaveDIBFile(dib, path(file), 90).ok);
        EXPECT_TRUE(sameImage(dib, load(file)));
        ASSERT_TRUE(SavePictureFile(dib.Picture(), path(std::string("p") + file), 90).ok);
        const PictureFile f = LoadPictureFile(path(std::string("p") + file));
        ASSERT_TRUE(f.picture);
        EXPECT_TRUE(sameImage(dib, *f.picture.Handle()));
    }
}

TEST_F(PictureFiles, NaturalSizeIsReturnedWhenNoneIsAsked) {
    ASSERT_TRUE(SaveDIBFile(smoothPicture(40, 30), path("s.png"), 90).ok);
    PictureHolder holder;
    int w = 0, h = 0;
    ASSERT_TRUE(Loadpicture(holder, path("s.png"), w, h, 3).ok);
    EXPECT_EQ(w, 40);
    EXPECT_EQ(h, 30);
    EXPECT_FALSE(holder.showFlag);
    EXPECT_TRUE(holder.secondFlag);
    ASSERT_TRUE(Loadpicture(holder, path("s.png"), w, h, 0).ok);
    EXPECT_TRUE(holder.showFlag);
}

TEST_F(PictureFiles, MissingFilesUnknownKeysAndDeadEntriesLoadNothingQuietly) {
    const cDIBSection dib = smoothPicture(8, 8);
    ASSERT_TRUE(SaveDIBFile(dib, path("real.png"), 90).ok);
    for (const char* file : {"photo.PCD", "x.koala", "x.xyz"})
        writeBytes(file, readBytes("real.png"));
    for (const char* file : {"missing.png", "photo.PCD", "x.koala", "x.xyz"}) {
        SCOPED_TRACE(file);
        PictureHolder holder;
        int w = 0, h = 0;
        const ImageStatus r = Loadpicture(holder, path(file), w, h);
        EXPECT_FALSE(r.ok);
        EXPECT_FALSE(r.message);
        EXPECT_FALSE(holder.picture);
        const PictureFile f = LoadPictureFile(path(file));
        EXPECT_FALSE(f.picture);
        EXPECT_FALSE(f.message);
    }
}

TEST_F(PictureFiles, CorruptJpegFallsToThePlatformLoaderThenReports) {
    writeBytes("bad.jpg", std::string("\xFF\xD8\xFF") + std::string(100, 'x'));
    for (Language lang : {Language::English, Language::German}) {
        PictureHolder holder;
        int w = 0, h = 0;
        const ImageStatus r = Loadpicture(holder, path("bad.jpg"), w, h, 0, env(lang));
        EXPECT_FALSE(r.ok);
        ASSERT_TRUE(r.message);
        EXPECT_EQ(r.message->title, "Fehler");
        const std::string& text = r.message->text;
        if (lang == Language::English) {
            EXPECT_EQ(text.rfind("Loading of the picture " + path("bad.jpg") +
                                     " fault! \r\n\r\nDescription: ",
                                 0),
                      0u)
                << text;
            EXPECT_TRUE(text.ends_with("\r\n\r\nSource: Brindlesee")) << text;
        } else {
            EXPECT_EQ(text.rfind("Laden des Bildes " + path("bad.jpg") +
                                     " mißlungen! \r\n\r\nBeschreibung: ",
                                 0),
                      0u)
                << text;
            EXPECT_TRUE(text.ends_with("\r\n\r\nQuelle: Brindlesee")) << text;
        }
        EXPECT_FALSE(holder.picture) << "the holder keeps its state";
    }
}

TEST_F(PictureFiles, JpegTheFastDecoderRefusesIsReadByThePlatformLoader) {
    // A CMYK JPEG: the fast decoder will not turn it into blue-green-red.
    std::vector<unsigned char> cmyk(16 * 16 * 4);
    for (std::size_t i = 0; i < cmyk.size(); i += 4)
        cmyk[i] = 0, cmyk[i + 1] = 255, cmyk[i + 2] = 255, cmyk[i + 3] = 0;
    tjhandle h = tjInitCompress();
    unsigned char* out = nullptr;
    unsigned long size = 0;
    ASSERT_EQ(tjCompress2(h, cmyk.data(), 16, 64, 16, TJPF_CMYK, &out, &size, TJSAMP_444, 95, 0),
              0);
    writeBytes("cmyk.jpg", std::string(reinterpret_cast<char*>(out), size));
    tjFree(out);
    tjDestroy(h);
    cDIBSection direct;
    EXPECT_FALSE(LoadJPG(direct, path("cmyk.jpg")));
    const cDIBSection dib = load("cmyk.jpg");
    EXPECT_EQ(dib.Width(), 16);
    EXPECT_EQ(dib.Height(), 16);
}

TEST_F(PictureFiles, BmpThatIsNotABmpIsLoggedAndReadByContent) {
    const cDIBSection dib = noisePicture(6, 5, 52);
    ASSERT_TRUE(SaveDIBFile(dib, path("really-png.png"), 90).ok);
    writeBytes("fake.bmp", readBytes("really-png.png"));
    EXPECT_TRUE(sameImage(dib, load("fake.bmp", 0, 0, env())));
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(log[0].rfind("Module2 - Loadpicture - BMP -> Fehler beim laden: ", 0), 0u) << log[0];
}

TEST_F(PictureFiles, MultiPageTiffShowsThePageOne) {
    const std::string file = path("pages.tif");
    FIMULTIBITMAP* multi = FreeImage_OpenMultiBitmap(FIF_TIFF, file.c_str(), TRUE, FALSE, TRUE, 0);
    ASSERT_NE(multi, nullptr);
    for (int v : {40, 200}) {
        FIBITMAP* page = FreeImage_Allocate(5, 4, 24);
        for (unsigned y = 0; y < 4; ++y)
            std::memset(FreeImage_GetScanLine(page, static_cast<int>(y)), v, 15);
        FreeImage_AppendPage(multi, page);
        FreeImage_Unload(page);
    }
    ASSERT_TRUE(FreeImage_CloseMultiBitmap(multi, 0));
    const cDIBSection dib = load("pages.tif");
    EXPECT_TRUE(sameImage(makeDib(5, 4, [](int, int) { return Bgr{40, 40, 40}; }), dib));
}

TEST_F(PictureFiles, MultiPageReadLogsItsFailures) {
    writeBytes("text.tif", "not a picture at all, just text");
    cDIBSection dib;
    const ImageEnv e = env();
    EXPECT_FALSE(freeImageMultiPageRead("   ", dib, e));
    EXPECT_FALSE(freeImageMultiPageRead(path("none.tif"), dib, e));
    EXPECT_FALSE(freeImageMultiPageRead(path("text.tif"), dib, e));
    EXPECT_EQ(log, (std::vector<std::string>{
                       "[FreeImage_MultiPage_Load] No file specified to load",
                       "[FreeImage_MultiPage_Load] File not found",
                       "[FreeImage_MultiPage_Load] Unable to determine the file type of the "
                       "specified multipage bitmap",
                   }));
}

std::uint32_t crc32(const std::string& bytes) {
    std::uint32_t c = 0xFFFFFFFFu;
    for (unsigned char b : bytes) {
        c ^= b;
        for (int k = 0; k < 8; ++k) c = (c >> 1) ^ (0xEDB88320u & (0u - (c & 1)));
    }
    return ~c;
}

TEST_F(PictureFiles, SizeBombsAreRefusedBeforeThePixelsAreAllocated) {
    // PNG: a valid header promising 60000 x 60000 pixels, then nothing.
    Bytes ihdr;
    ihdr.text("IHDR").u32be(60000).u32be(60000).u8(8).u8(2).u8(0).u8(0).u8(0);
    Bytes png;
    png.u8(137).text("PNG").u8(13).u8(10).u8(26).u8(10).u32be(13).append(ihdr.str()).u32be(crc32(ihdr.str()));
    png.u32be(0).text("IEND").u32be(crc32("IEND"));
    writeBytes("bomb.png", png.str());
    // BMP: 60000 x 60000 at 24 bits in 100 bytes.
    Bytes bmp;
    bmp.text("BM").u32(100).u32(0).u32(54).u32(40).u32(60000).u32(60000).u16(1).u16(24);
    bmp.u32(0).u32(0).u32(0).u32(0).u32(0).u32(0).fill(46, 0);
    writeBytes("bomb.bmp", bmp.str());
    writeBytes("bomb.tif", png.str());  // the multi-page road, then the read by content
    for (const char* file : {"bomb.png", "bomb.bmp", "bomb.tif"}) {
        SCOPED_TRACE(file);
        PictureHolder holder;
        int w = 0, h = 0;
        EXPECT_FALSE(Loadpicture(holder, path(file), w, h).ok);
        EXPECT_FALSE(holder.picture);
    }
}

TEST_F(PictureFiles, MetafilesBringTheirHintAndLoadNothing) {
    writeBytes("a.wmf", std::string(64, '\0'));
    const PictureFile f = LoadPictureFile(path("a.wmf"));
    EXPECT_FALSE(f.picture);
    ASSERT_TRUE(f.hint);
    EXPECT_EQ(f.hint->hint, 2);
    EXPECT_EQ(f.hint->text,
              "Das Format wmf oder emf wird von Netscape nicht unterstützt \r\n"
              "Wir empfehlen die Verwendung von JPEG oder PNG Bildern.");
}

// What the loaders give at another size: the smooth reduction where an
// axis is made smaller, centre pixels where it is made larger.
cDIBSection smoothly(const cDIBSection& dib, int w, int h) {
    cDIBSection out;
    EXPECT_TRUE(smoothResize(dib, out, w, h));
    return out;
}

TEST_F(PictureFiles, FreeImageGroupsReduceSmoothlyAndEnlargeByStretching) {
    const cDIBSection dib = smoothPicture(40, 30);
    ASSERT_TRUE(SaveDIBFile(dib, path("s.png"), 90).ok);
    EXPECT_TRUE(sameImage(smoothly(dib, 20, 15), load("s.png", 20, 15)));
    cDIBSection stretched;
    ASSERT_TRUE(stretched.Create(80, 60));
    dib.StretchPicture(stretched.hdc(), 0, 0, 80, 60, 0, 0, 40, 30);
    EXPECT_TRUE(sameImage(stretched, load("s.png", 80, 60)));
    EXPECT_TRUE(sameImage(smoothly(dib, 20, 60), load("s.png", 20, 60)));
}

TEST_F(PictureFiles, PlatformGroupDrawsIntoTheHolderAtTheAskedSize) {
    const cDIBSection dib = smoothPicture(40, 30);
    ASSERT_TRUE(SaveDIBFile(dib, path("s.bmp"), 90).ok);
    EXPECT_TRUE(sameImage(smoothly(dib, 20, 15), load("s.bmp", 20, 15)));
}

TEST_F(PictureFiles, TgaAndPcxKeepTheirNaturalSize) {
    Bytes tga;
    tga.u8(0).u8(0).u8(2).u16(0).u16(0).u8(0).u16(0).u16(0).u16(2).u16(1).u8(24).u8(0x20);
    tga.u8(1).u8(2).u8(3).u8(4).u8(5).u8(6);
    writeBytes("p.tga", tga.str());
    const cDIBSection dib = load("p.tga", 10, 10);
    EXPECT_TRUE(sameImage(makeDib({{{1, 2, 3}, {4, 5, 6}}}), dib));
}

TEST_F(PictureFiles, JpegReductionAveragesInOneStepWhateverTheFactor) {
    ImageEnv full = env();
    full.jpegDctScaling = false;
    for (auto [w, h] : {std::pair{1001, 800}, std::pair{1000, 1000}}) {
        SCOPED_TRACE(testing::Message() << w << "x" << h);
        ASSERT_TRUE(SaveJPG(smoothPicture(w, h), path("big.jpg"), 90).ok);
        cDIBSection decoded;
        ASSERT_TRUE(LoadJPG(decoded, path("big.jpg")));
        const cDIBSection expected = smoothly(decoded, 100, 100);
        EXPECT_TRUE(sameImage(expected, load("big.jpg", 100, 100, full)));
        // DCT scaling gives nearly the same picture much faster.
        EXPECT_TRUE(similarImage(expected, load("big.jpg", 100, 100, env()), 3.0));
    }
}

TEST_F(PictureFiles, AmpersandJpgIsWrittenBySaveDibFileOnly) {
    const cDIBSection dib = smoothPicture(16, 16);
    EXPECT_TRUE(SaveDIBFile(dib, path("odd&jpg"), 80).ok);
    EXPECT_EQ(readBytes("odd&jpg").substr(0, 2), "\xFF\xD8");
    EXPECT_FALSE(SavePictureFile(dib.Picture(), path("other&jpg"), 80).ok);
    EXPECT_FALSE(fileExists(path("other&jpg")));
    EXPECT_FALSE(SaveDIBFile(dib, path("a.gif"), 80).ok);
    EXPECT_FALSE(SaveDIBFile(cDIBSection{}, path("a.png"), 80).ok);
}

}  // namespace
}  // namespace brindle::test
