// print: pictures laid out by a print layout (.bsp), rendered to a PDF page.
#include <iostream>

#include "image/file_stamp.h"
#include "print/print_file.h"
#include "print/sheet_painter.h"
#include "shell/cli_commands.h"

namespace brindle::cli {
namespace {

const char* kPrintUsage =
    "usage: brindlesee-cli print LAYOUT.bsp PICTURE... -o OUT.pdf [--paper A4|Letter] [--landscape]";

struct PrintArgs {
    std::string layout;
    std::vector<std::string> pictures;
    std::string output;
    print::Paper paper = print::Paper::A4;
    bool landscape = false;
};

// An empty answer when the arguments are fine, else the message.
std::string parsePrintArgs(const Args& args, PrintArgs& out) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "-o" || a == "--paper") {
            if (i + 1 >= args.size()) return kPrintUsage;
            const std::string& value = args[++i];
            if (a == "-o") {
                out.output = value;
            } else if (value == "A4" || value == "a4") {
                out.paper = print::Paper::A4;
            } else if (value == "Letter" || value == "letter") {
                out.paper = print::Paper::Letter;
            } else {
                return "paper must be A4 or Letter: " + value;
            }
        } else if (a == "--landscape") {
            out.landscape = true;
        } else if (a.size() > 1 && a[0] == '-') {
            return "unknown option: " + a;
        } else if (out.layout.empty()) {
            out.layout = a;
        } else {
            out.pictures.push_back(a);
        }
    }
    if (out.layout.empty() || out.pictures.empty() || out.output.empty()) return kPrintUsage;
    return {};
}

}  // namespace

int printSheet(const Args& args) {
    PrintArgs parsed;
    const std::string wrong = parsePrintArgs(args, parsed);
    if (!wrong.empty()) return fail(wrong);
    for (const std::string& p : parsed.pictures)
        if (!fileExists(p)) return fail("file not found: " + p);
    std::vector<print::Box> boxes;
    std::string error;
    if (!print::loadLayoutFile(parsed.layout, parsed.pictures.size(), boxes, error)) return fail(error);
    std::cerr << "loading " << parsed.pictures.size() << " pictures\n";
    std::vector<QImage> images;
    if (!print::loadSheetPictures(parsed.pictures, boxes, images, error)) return fail(error);
    if (!print::printSheetToPdf(parsed.output, parsed.paper, parsed.landscape, boxes, images, error))
        return fail(error);
    std::cerr << "wrote " << parsed.output << "\n";
    return 0;
}

}  // namespace brindle::cli
