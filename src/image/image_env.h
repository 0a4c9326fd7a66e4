// What the picture functions are given (language, log) and what they hand
// back: success and, where the user is to be told something, the message.
// The core never shows anything; the GUI or the CLI decides.
#pragma once

#include <optional>
#include <string>

#include "album/diagnose.h"
#include "album/language.h"

namespace brindle {

struct ImageEnv {
    Language language = Language::German;
    LogSink log;  // the test-mode log; empty logs nothing
    // A JPEG wanted smaller than it is decodes at a reduced DCT scale.
    bool jpegDctScaling = true;
};

// A message box's worth: title and text ("\r\n" between lines). A non-zero
// hint is a one-time hint with that number, shown only while the user has
// not switched it off.
struct ImageMessage {
    std::string title;
    std::string text;
    int hint = 0;
};

struct ImageStatus {
    bool ok = false;
    std::optional<ImageMessage> message;

    explicit operator bool() const { return ok; }
    static ImageStatus success() { return {true, std::nullopt}; }
    static ImageStatus failure(std::optional<ImageMessage> m = std::nullopt) {
        return {false, std::move(m)};
    }
};

inline constexpr const char* kLineEnd = "\r\n";

}  // namespace brindle
