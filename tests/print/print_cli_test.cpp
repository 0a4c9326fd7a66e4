// brindlesee-cli print, checked on the rendered page: every picture stands
// where its box says.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

#include "image/picture_io.h"
#include "print/print_file.h"
#include "shell/cli_run.h"
#include "support/temp_home.h"

namespace brindle::print {
namespace {

using test::runCli;
using test::TempHomeTest;

struct Rgb {
    int r, g, b;
};

constexpr Rgb kRed{255, 0, 0}, kMagenta{255, 0, 255}, kGreen{0, 160, 0}, kBlue{0, 0, 255};
constexpr int kDpi = 50;

struct Page {
    int width = 0, height = 0;
    std::string pixels;  // RGB rows from the top
};

// The pixel rectangle a colour covers on the page, edges included.
struct Found {
    int left = 1 << 30, top = 1 << 30, right = -1, bottom = -1;
};

class PrintCliTest : public TempHomeTest {
protected:
    // A picture whose top half is `top` and bottom half `bottom`.
    std::string picture(const std::string& name, int w, int h, Rgb top, Rgb bottom) {
        cDIBSection dib;
        EXPECT_TRUE(dib.Create(w, h));
        for (int y = 0; y < h; ++y) {
            const Rgb c = y < h / 2 ? top : bottom;
            std::uint8_t* row = dib.hdc().row(y);
            for (int x = 0; x < w; ++x) {
                row[3 * x] = static_cast<std::uint8_t>(c.b);
                row[3 * x + 1] = static_cast<std::uint8_t>(c.g);
                row[3 * x + 2] = static_cast<std::uint8_t>(c.r);
            }
        }
        EXPECT_TRUE(SaveDIBFile(dib, path(name), 90).ok);
        return path(name);
    }

    test::CliRun print(const std::string& args) { return runCli("print " + args, path("err.txt")); }
    std::string err() { return readBytes("err.txt"); }
    // The message is the last line; progress lines may stand before it.
    std::string lastLine() {
        std::string e = err();
        if (!e.empty() && e.back() == '\n') e.pop_back();
        return e.substr(e.rfind('\n') == std::string::npos ? 0 : e.rfind('\n') + 1) + "\n";
    }

    Page render(const std::string& pdf) {
        const std::string cmd = "pdftoppm -r " + std::to_string(kDpi) + " -singlefile '" + pdf + "' '" +
                                path("page") + "'";
        Page page;
        if (std::system(cmd.c_str()) != 0) return page;
        const std::string bytes = readBytes("page.ppm");
        std::istringstream in(bytes);
        std::string magic;
        int maxval = 0;
        in >> magic >> page.width >> page.height >> maxval;
        in.get();
        if (magic != "P6" || maxval != 255) return {};
        page.pixels = bytes.substr(static_cast<std::size_t>(in.tellg()));
        return page;
    }

    static Found find(const Page& page, Rgb c) {
        Found f;
        for (int y = 0; y < page.height; ++y)
            for (int x = 0; x < page.width; ++x) {
                const auto* p =
                    reinterpret_cast<const unsigned char*>(page.pixels.data()) + 3 * (y * page.width + x);
                if (std::abs(p[0] - c.r) + std::abs(p[1] - c.g) + std::abs(p[2] - c.b) > 90) continue;
                f.left = std::min(f.left, x);
                f.top = std::min(f.top, y);
                f.right = std::max(f.right, x + 1);
                f.bottom = std::max(f.bottom, y + 1);
            }
        return f;
    }

    // The colour covers (left, top, width x height) millimetres, within two pixels.
    static void expectAt(const Page& page, Rgb c, double left, double top, double width, double height) {
        const Found f = find(page, c);
        const double px = kDpi / 25.4;
        EXPECT_NEAR(f.left, left * px, 2);
        EXPECT_NEAR(f.top, top * px, 2);
        EXPECT_NEAR(f.right, (left + width) * px, 2);
        EXPECT_NEAR(f.bottom, (top + height) * px, 2);
    }
};

TEST_F(PrintCliTest, EachPictureLandsInItsBoxOnThePage) {
    const std::string two = picture("two.bmp", 60, 40, kRed, kMagenta);
    const std::string green = picture("green.jpg", 30, 50, kGreen, kGreen);
    const std::string blue = picture("blue.bmp", 20, 20, kBlue, kBlue);
    writeBytes("sheet.bsp", encodeLayout({Box{10, 10, 80, 50}, Box{100.5F, 20, 60, 90},
                                          Box{20, 150.25F, 170, 100}}));
    const std::string args = "'" + path("sheet.bsp") + "' '" + two + "' '" + green + "' '" + blue + "' -o '";
    ASSERT_EQ(print(args + path("a4.pdf") + "'").status, 0) << err();
    Page page = render(path("a4.pdf"));
    ASSERT_NEAR(page.width, 210 * kDpi / 25.4, 1);
    ASSERT_NEAR(page.height, 297 * kDpi / 25.4, 1);
    // The upper half of the first picture stays on top.
    expectAt(page, kRed, 10, 10, 80, 25);
    expectAt(page, kMagenta, 10, 35, 80, 25);
    expectAt(page, kGreen, 100.5, 20, 60, 90);
    expectAt(page, kBlue, 20, 150.25, 170, 100);

    // Letter, landscape; a layout for more pictures is read as far as needed.
    writeBytes("wide.bsp", encodeLayout({Box{5, 5, 100, 60}, Box{150, 100, 40, 40}, Box{1, 1, 1, 1}}));
    ASSERT_EQ(print("'" + path("wide.bsp") + "' '" + green + "' '" + blue + "' -o '" + path("letter.pdf") +
                    "' --paper Letter --landscape")
                  .status,
              0)
        << err();
    page = render(path("letter.pdf"));
    ASSERT_NEAR(page.width, 279.4 * kDpi / 25.4, 1);
    ASSERT_NEAR(page.height, 215.9 * kDpi / 25.4, 1);
    expectAt(page, kGreen, 5, 5, 100, 60);
    expectAt(page, kBlue, 150, 100, 40, 40);
}

TEST_F(PrintCliTest, BadInputExitsWithAMessageAndWritesNothing) {
    const std::string blue = picture("blue.bmp", 20, 20, kBlue, kBlue);
    writeBytes("one.bsp", "1\r\n2\r\n3\r\n4\r\n");
    writeBytes("foreign.bsp", "<html>\r\n2\r\n3\r\n4\r\n");
    const std::string out = " -o '" + path("out.pdf") + "'";
    struct Case {
        std::string args, message;
    };
    const Case cases[] = {
        {"'" + path("one.bsp") + "' '" + blue + "' '" + blue + "'" + out,
         path("one.bsp") + ": The print layout holds only 1 pictures, but 2 are selected."},
        {"'" + path("foreign.bsp") + "' '" + blue + "'" + out,
         path("foreign.bsp") + ": Line 1 of the print layout is not a number."},
        {"'" + path("one.bsp") + "' '" + path("nothing.jpg") + "'" + out, "file not found: " + path("nothing.jpg")},
        {"'" + path("one.bsp") + "' '" + blue + "'" + out + " --paper A3", "paper must be A4 or Letter: A3"},
        {"'" + path("one.bsp") + "' '" + blue + "'",
         "usage: brindlesee-cli print LAYOUT.bsp PICTURE... -o OUT.pdf [--paper A4|Letter] [--landscape]"},
        {"'" + path("one.bsp") + "' '" + blue + "' -o '" + path("no/such/dir/out.pdf") + "'",
         "Cannot write the file: " + path("no/such/dir/out.pdf")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args);
        EXPECT_EQ(print(c.args).status, 1);
        EXPECT_EQ(lastLine(), "brindlesee-cli: " + c.message + "\n");
        EXPECT_EQ(err().find("brindlesee-cli: "), err().rfind("brindlesee-cli: "));
        EXPECT_FALSE(std::ifstream(path("out.pdf")).good());
    }
}

}  // namespace
}  // namespace brindle::print
