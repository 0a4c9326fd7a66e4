// A design: an ordered list of step lines ("Kontrast(50)", "Emboss", ...),
// run on one picture in the test view or on many in the batch. The two
// runs differ in a few steps (sharpen strength, brightness method, size).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "image/dib_section.h"
#include "image/image_env.h"
#include "image/progress.h"

namespace brindle::studio {

enum class ChainMode { TestView, Batch };

struct StepEnv {
    ChainMode mode = ChainMode::TestView;
    ProgressWord* progress = nullptr;  // percent of the running step
    ImageEnv image;                    // for loading a frame's background file
};

// Runs one step line on `dib` in place; the size may change. A line whose
// name is unknown (or that does nothing in this mode) leaves the picture
// unchanged and returns false.
bool applyStep(cDIBSection& dib, std::string_view line, const StepEnv& env);

// The step a line names ("3D Effekt" for "3D Effekt(5)"), for status
// lines; the first part of the line when it names no known step.
std::string stepName(std::string_view line);

// Runs lines[from] and returns 1, or, when it starts a run of steps that
// change each pixel on its own (contrast, brightness, colour), runs all of
// them in one pass over the rows and returns how many: the same bytes as
// one after another, with less memory traffic. A sharpening right after
// such a run joins the pass and is counted too; so does a size step that
// shrinks right after a frame on a colour. 0 when `from` is past the end.
std::size_t applySteps(cDIBSection& dib, const std::vector<std::string>& lines, std::size_t from,
                       const StepEnv& env);

// Runs the lines in order.
void applyChain(cDIBSection& dib, const std::vector<std::string>& lines, const StepEnv& env);

}  // namespace brindle::studio
