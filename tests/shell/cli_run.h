// Runs brindlesee-cli as a user does, from a shell, for the command-line
// tests: stdout is captured, stderr goes to a file the test reads.
#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

namespace brindle::test {

struct CliRun {
    int status = -1;  // the exit status; -1 when the program did not exit
    std::string out;
};

// `args` are passed to the shell as they stand (quote paths); `prefix`
// runs before the program, e.g. "timeout 20 " or a privilege drop.
inline CliRun runCli(const std::string& args, const std::string& errFile, const std::string& prefix = "") {
    CliRun r;
    const std::string cmd = prefix + std::string(BRINDLESEE_CLI) + " " + args + " 2>'" + errFile + "'";
    FILE* p = ::popen(cmd.c_str(), "r");
    if (!p) return r;
    std::array<char, 4096> buf{};
    for (std::size_t n; (n = std::fread(buf.data(), 1, buf.size(), p)) > 0;) r.out.append(buf.data(), n);
    const int st = ::pclose(p);
    r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    return r;
}

}  // namespace brindle::test
