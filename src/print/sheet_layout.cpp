#include "print/sheet_layout.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brindle::print {
namespace {

// After this many rounds the search gives up and keeps the last one.
constexpr int kMaxRounds = 11240;
// The gap between boxes and between a box and the sheet's edge.
constexpr double kGap = 0.5;
// No box shrinks below this by typed values or steps.
constexpr double kMinSize = 1.0;

}  // namespace

SizeF paperSize(Paper paper, bool landscape) {
    const SizeF portrait = paper == Paper::Letter ? SizeF{215.9, 279.4} : SizeF{210, 297};
    return landscape ? SizeF{portrait.height, portrait.width} : portrait;
}

float round2(double v) { return static_cast<float>(std::round(v * 100.0) / 100.0); }

SheetLayout::SheetLayout(SizeF sheet, std::vector<SizeF> natural)
    : sheet_(sheet), natural_(std::move(natural)), boxes_(natural_.size()) {
    // A picture without a size would divide by zero below; a square stands in.
    for (SizeF& n : natural_)
        if (!(n.width > 0) || !(n.height > 0)) n = {1, 1};
}

SizeF SheetLayout::natural(std::size_t i) const {
    const SizeF n = natural_.at(i);
    return boxes_.at(i).rotated ? SizeF{n.height, n.width} : n;
}

bool SheetLayout::setBoxes(const std::vector<Box>& boxes) {
    if (boxes.size() != boxes_.size()) return false;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const bool rotated = boxes_[i].rotated;
        boxes_[i] = boxes[i];
        boxes_[i].rotated = rotated;
    }
    return true;
}

// One round at scale 4 / (c + 3): rows left to right, a new row when the
// next box would pass the right edge. False as soon as a box leaves the sheet.
bool SheetLayout::searchRound(double c, double start) {
    const double right = sheet_.width - kGap;
    double x = start;
    double y = start;
    double rowBottom = y;
    for (std::size_t i = 0; i < boxes_.size(); ++i) {
        const SizeF n = natural(i);
        const double w = n.width * 4.0 / (c + 3.0);
        const double h = n.height * 4.0 / (c + 3.0);
        if (x + w > right) {
            x = start;
            y = rowBottom + kGap;
        }
        Box& b = boxes_[i];
        b.left = round2(x);
        b.top = round2(y);
        b.width = round2(w);
        b.height = round2(h);
        rowBottom = std::max(rowBottom, y + h);
        x = x + w + kGap;
        if (x - kGap > right || rowBottom > sheet_.height) return false;
    }
    return true;
}

void SheetLayout::search(double start) {
    if (boxes_.empty() || !(sheet_.width > 0) || !(sheet_.height > 0)) return;
    double c = natural(0).width * 4.0 / sheet_.width - 2.0;
    for (int round = 1; round <= kMaxRounds + 1; ++round) {
        c += 1.0;
        if (searchRound(c, start)) return;
    }
}

void SheetLayout::centre() {
    if (boxes_.empty()) return;
    double minLeft = boxes_[0].left, minTop = boxes_[0].top;
    double maxRight = boxes_[0].right(), maxBottom = boxes_[0].bottom();
    for (const Box& b : boxes_) {
        minLeft = std::min<double>(minLeft, b.left);
        minTop = std::min<double>(minTop, b.top);
        maxRight = std::max<double>(maxRight, b.right());
        maxBottom = std::max<double>(maxBottom, b.bottom());
    }
    const double dx = (sheet_.width - (maxRight - minLeft)) / 2.0 - minLeft;
    const double dy = (sheet_.height - (maxBottom - minTop)) / 2.0 - minTop;
    for (Box& b : boxes_) {
        b.left = round2(b.left + dx);
        b.top = round2(b.top + dy);
    }
}

void SheetLayout::rotate(std::size_t i) {
    Box& b = boxes_.at(i);
    b.rotated = !b.rotated;
    std::swap(b.width, b.height);
}

double SheetLayout::value(std::size_t i, Field field) const {
    const Box& b = boxes_.at(i);
    const SizeF n = natural(i);
    switch (field) {
        case Field::Width: return b.width;
        case Field::Height: return b.height;
        case Field::WidthPercent: return round2(b.width * 100.0 / n.width);
        case Field::HeightPercent: return round2(b.height * 100.0 / n.height);
        case Field::Left: return b.left;
        case Field::Top: return b.top;
    }
    return 0;
}

// Scales a box down, keeping its proportions, until it fits the sheet.
void SheetLayout::fitOnSheet(Box& b) const {
    const double f = std::min({1.0, sheet_.width / b.width, sheet_.height / b.height});
    if (f >= 1.0) return;
    b.width = round2(b.width * f);
    b.height = round2(b.height * f);
}

// Sets the leading side of box i (of every box when all are the same size);
// the other side follows the picture's proportions unless distortion is allowed.
void SheetLayout::setSize(std::size_t i, double v, bool widthLeads) {
    v = std::max(v, kMinSize);
    for (std::size_t j = 0; j < boxes_.size(); ++j) {
        if (j != i && !options.sameSize) continue;
        Box& b = boxes_[j];
        const SizeF n = natural(j);
        double bw = b.width;
        double bh = b.height;
        if (widthLeads) {
            bw = v;
            if (!options.allowDistortion) bh = v * n.height / n.width;
        } else {
            bh = v;
            if (!options.allowDistortion) bw = v * n.width / n.height;
        }
        b.width = round2(bw);
        b.height = round2(bh);
        if (options.fitToPage) fitOnSheet(b);
    }
}

void SheetLayout::setValue(std::size_t i, Field field, double v) {
    if (!std::isfinite(v)) return;
    Box& b = boxes_.at(i);
    const SizeF n = natural(i);
    switch (field) {
        case Field::Width: return setSize(i, v, true);
        case Field::Height: return setSize(i, v, false);
        case Field::WidthPercent: return setSize(i, n.width * v / 100.0, true);
        case Field::HeightPercent: return setSize(i, n.height * v / 100.0, false);
        case Field::Left:
        case Field::Top: break;
    }
    const bool horizontal = field == Field::Left;
    const double delta = v - (horizontal ? b.left : b.top);
    for (std::size_t j = 0; j < boxes_.size(); ++j) {
        if (j != i && !options.takeAll) continue;
        float& p = horizontal ? boxes_[j].left : boxes_[j].top;
        p = round2(p + delta);
    }
}

void SheetLayout::step(std::size_t i, Field field, bool up, bool small) {
    const double by = small ? kSmallStep : kLargeStep;
    setValue(i, field, value(i, field) + (up ? by : -by));
}

}  // namespace brindle::print
