// The design batch: the step lines, in batch mode, over every picture.
#include <string_view>

#include "studio/batch_run.h"
#include "studio/design_chain.h"

namespace brindle::studio {
namespace {

// The name a status line shows: the line up to its bracket ("3D Effekt"
// of "3D Effekt(5)"), without the blanks around it.
std::string stepName(std::string_view line) {
    line = line.substr(0, line.find('('));
    const auto first = line.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    const auto last = line.find_last_not_of(' ');
    return std::string(line.substr(first, last - first + 1));
}

}  // namespace

BatchResult runDesignBatch(const std::vector<std::string>& steps, const BatchOptions& options,
                           Prompter& prompter, Language language, const BatchCallbacks& callbacks) {
    const PictureWork work = [&steps, language](cDIBSection& dib,
                                                const std::function<void(const std::string&)>& step) {
        StepEnv env;
        env.mode = ChainMode::Batch;
        env.image.language = language;
        for (const std::string& line : steps) {
            const std::string name = stepName(line);
            if (name.empty()) continue;
            step(name);
            applyStep(dib, line, env);
        }
    };
    return runPictureBatch(options, work, prompter, language, callbacks);
}

}  // namespace brindle::studio
