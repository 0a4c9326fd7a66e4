#include "album/diagnose.h"

#include <cstdio>

#include "album/paths.h"

namespace brindle {

void appendLogLine(const std::string& logPath, const std::string& text) {
    if (std::FILE* f = std::fopen(logPath.c_str(), "ab")) {
        std::fputs(text.c_str(), f);
        std::fputs("\n", f);
        std::fclose(f);
    }
}

LogSink diagnoseSink(const std::string& programDirectory) {
    if (!dateiVorhanden(programDirectory + kTestModeFileName)) return {};
    std::string logPath = programDirectory + kLogFileName;
    return [logPath](const std::string& text) { appendLogLine(logPath, text); };
}

}  // namespace brindle
