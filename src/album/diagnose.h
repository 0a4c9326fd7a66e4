// The test-mode log "Brindt.txt": one line appended per call, the file
// opened and closed each time so that the last line survives a crash.
#pragma once

#include <functional>
#include <string>

namespace brindle {

// Receives one log line; an empty function logs nothing.
using LogSink = std::function<void(const std::string&)>;

inline constexpr const char* kLogFileName = "Brindt.txt";
inline constexpr const char* kTestModeFileName = "testmodus.txt";

// Appends `text` and a line end to the file at `logPath`.
void appendLogLine(const std::string& logPath, const std::string& text);

// A sink writing to "Brindt.txt" in `programDirectory` when "testmodus.txt"
// exists there, else an empty sink.
LogSink diagnoseSink(const std::string& programDirectory);

inline void logLine(const LogSink& log, const std::string& text) {
    if (log) log(text);
}

}  // namespace brindle
