#include "support/temp_home.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace brindle::test {

namespace fs = std::filesystem;

void TempHomeTest::SetUp() {
    std::string pattern = (fs::temp_directory_path() / "brindle-test-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    home_ = pattern + "/";
    ::setenv("BRINDLESEE_HOME", home_.c_str(), 1);
}

void TempHomeTest::TearDown() {
    std::error_code ec;
    fs::remove_all(home_, ec);
    ::unsetenv("BRINDLESEE_HOME");
}

void TempHomeTest::writeBytes(const std::string& name, const std::string& bytes) const {
    fs::path p = fs::path(path(name));
    fs::create_directories(p.parent_path());
    std::ofstream(p, std::ios::binary) << bytes;
}

std::string TempHomeTest::readBytes(const std::string& name) const {
    std::ifstream in(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void TempHomeTest::touch(const std::string& name) const { writeBytes(name, "x"); }

}  // namespace brindle::test
