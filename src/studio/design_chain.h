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

// Runs the lines in order.
void applyChain(cDIBSection& dib, const std::vector<std::string>& lines, const StepEnv& env);

}  // namespace brindle::studio
