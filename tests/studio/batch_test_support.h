// Pictures and a recording of everything a batch run shows, for the batch
// tests.
#pragma once

#include <sys/stat.h>

#include <map>
#include <string>
#include <vector>

#include "image/dib_section.h"
#include "studio/batch_run.h"
#include "support/scripted_prompter.h"

namespace brindle::test {

// Everything a run showed, in order, and what it answered.
struct BatchRecord {
    std::vector<std::string> events;  // "status ...", "progress i/n", "preview WxH"
    ScriptedPrompter prompter;
    studio::BatchResult result;
};

inline studio::BatchCallbacks recordingCallbacks(BatchRecord& record) {
    studio::BatchCallbacks c;
    c.status = [&record](const std::string& s) { record.events.push_back("status " + s); };
    c.progress = [&record](int done, int total) {
        record.events.push_back("progress " + std::to_string(done) + "/" + std::to_string(total));
    };
    c.finished = [&record](const cDIBSection& dib) {
        record.events.push_back("preview " + std::to_string(dib.Width()) + "x" +
                                std::to_string(dib.Height()));
    };
    return c;
}

inline long long modifiedSeconds(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 ? static_cast<long long>(st.st_mtim.tv_sec) : -1;
}

}  // namespace brindle::test
