// Painting a sheet of boxes with Qt Gui (no widgets): for the PDF of the
// command line and for the print window's printer.
#pragma once

#include <QImage>
#include <string>
#include <vector>

#include "album/language.h"
#include "print/sheet_layout.h"

class QPainter;

namespace brindle::print {

// Loads the pictures through the image core, turned by 90 degrees to the
// right where their box is rotated. False with the picture's message when one fails.
bool loadSheetPictures(const std::vector<std::string>& paths, const std::vector<Box>& boxes,
                       std::vector<QImage>& images, std::string& error);

// Each picture stretched to its box; `unitsPerMm` maps the sheet's
// millimetres to the painter's units.
void paintSheet(QPainter& painter, double unitsPerMm, const std::vector<Box>& boxes,
                const std::vector<QImage>& images);

// One page of the paper, without margins, at `dpi`.
bool printSheetToPdf(const std::string& path, Paper paper, bool landscape,
                     const std::vector<Box>& boxes, const std::vector<QImage>& images,
                     std::string& error, int dpi = 300, Language language = Language::English);

}  // namespace brindle::print
