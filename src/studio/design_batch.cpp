// The design batch: the step lines, in batch mode, over every picture.
#include "studio/batch_run.h"
#include "studio/design_chain.h"

#include <algorithm>

namespace brindle::studio {

BatchResult runDesignBatch(const std::vector<std::string>& steps, const BatchOptions& options,
                           Prompter& prompter, Language language, const BatchCallbacks& callbacks) {
    const PictureWork work = [&steps, language](cDIBSection& dib,
                                                const std::function<void(const std::string&)>& step) {
        StepEnv env;
        env.mode = ChainMode::Batch;
        env.image.language = language;
        for (std::size_t i = 0; i < steps.size();) {
            const std::string name = stepName(steps[i]);
            if (name.empty()) {  // a blank line is no step
                ++i;
                continue;
            }
            step(name);
            const std::size_t used = std::max<std::size_t>(1, applySteps(dib, steps, i, env));
            // Steps run together in one pass still each get their status line.
            for (std::size_t k = i + 1; k < i + used; ++k)
                if (const std::string next = stepName(steps[k]); !next.empty()) step(next);
            i += used;
        }
    };
    return runPictureBatch(options, work, prompter, language, callbacks);
}

}  // namespace brindle::studio
