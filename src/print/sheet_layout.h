// The sheet of the multi-picture print: one box per picture, in sheet units
// (millimetres from the sheet's top left corner), and the operations of the
// print window on them. No widgets: the window, the CLI and the tests share it.
#pragma once

#include <cstddef>
#include <vector>

namespace brindle::print {

struct Box {
    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;
    // Printed turned by 90 degrees (width and height are already swapped).
    bool rotated = false;

    float right() const { return left + width; }
    float bottom() const { return top + height; }
    bool operator==(const Box&) const = default;
};

struct SizeF {
    double width = 0;
    double height = 0;
};

// The window's check boxes.
struct SheetOptions {
    bool sameSize = false;         // a new size goes to every box
    bool allowDistortion = false;  // width and height change independently
    bool takeAll = false;          // a move moves every box
    bool fitToPage = true;         // a box is never made larger than the sheet
};

// Which typed value a step button changes.
enum class Field { Width, Height, WidthPercent, HeightPercent, Left, Top };

// Step sizes of the large and small buttons: millimetres or percent.
inline constexpr double kLargeStep = 10.0;
inline constexpr double kSmallStep = 1.0;

class SheetLayout {
public:
    // `natural` are the pictures' own sizes in sheet units (one entry each).
    SheetLayout(SizeF sheet, std::vector<SizeF> natural);

    const SizeF& sheet() const { return sheet_; }
    void setSheet(SizeF sheet) { sheet_ = sheet; }
    std::size_t count() const { return boxes_.size(); }
    const std::vector<Box>& boxes() const { return boxes_; }
    const Box& box(std::size_t i) const { return boxes_.at(i); }
    SizeF natural(std::size_t i) const;  // turned when the box is rotated
    SheetOptions options;

    // Takes boxes read from a file; false (and nothing changed) when the count differs.
    bool setBoxes(const std::vector<Box>& boxes);

    // The largest common scale at which all boxes fit the sheet in rows.
    void arrange() { search(0.5); }
    // The same, with the rows starting just outside the sheet's edge.
    void borderless() { search(-0.1); }
    // Moves the group of boxes as a whole to the middle of the sheet.
    void centre();
    // Turns box i by 90 degrees.
    void rotate(std::size_t i);

    // The typed value of `field` for box i, and setting it.
    double value(std::size_t i, Field field) const;
    void setValue(std::size_t i, Field field, double v);
    void step(std::size_t i, Field field, bool up, bool small);

private:
    void search(double start);
    bool searchRound(double c, double start);
    void setSize(std::size_t i, double v, bool widthLeads);
    void fitOnSheet(Box& b) const;

    SizeF sheet_;
    std::vector<SizeF> natural_;
    std::vector<Box> boxes_;
};

enum class Paper { A4, Letter };
// The paper's size in millimetres, turned for landscape.
SizeF paperSize(Paper paper, bool landscape);

// Rounds to two decimals, as the layout stores its values.
float round2(double v);

}  // namespace brindle::print
