// Every test runs in its own temporary folder, which is also its
// BRINDLESEE_HOME (the program directory).
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace brindle::test {

class TempHomeTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // The folder, ending in '/'.
    const std::string& home() const { return home_; }
    std::string path(const std::string& name) const { return home_ + name; }

    void writeBytes(const std::string& name, const std::string& bytes) const;
    std::string readBytes(const std::string& name) const;
    void touch(const std::string& name) const;  // creates parent folders too

private:
    std::string home_;
};

}  // namespace brindle::test
