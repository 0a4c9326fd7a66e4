// Design lists come from anywhere: the reader must take any bytes, write
// back what it read, and every line must run on a picture without harm.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "studio/design_chain.h"
#include "studio/design_list.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace brindle::studio;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const DesignListRead read = parseDesignList(bytes);
    if (!read.ok) return 0;
    const DesignListRead again = parseDesignList(encodeDesignList(read.lines));
    if (!again.ok || again.lines != read.lines) __builtin_trap();

    brindle::cDIBSection picture;
    for (const ChainMode mode : {ChainMode::TestView, ChainMode::Batch}) {
        StepEnv env;
        env.mode = mode;
        for (const std::string& line : read.lines) {
            // Sizing is bounded by the picture limit, which is still far too
            // slow for a fuzzer; its arguments are tested elsewhere.
            if (stepName(line) == "Größe") continue;
            if (picture.empty() || picture.Width() * picture.Height() > 4096) {
                picture.Create(7, 5);
                picture.effectRandomiseBits(false);
            }
            applyStep(picture, line, env);
        }
    }
    return 0;
}
