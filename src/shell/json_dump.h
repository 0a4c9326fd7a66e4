// Writes a record as one JSON object, fields in file order, by walking the
// same field lists as the binary codec.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <type_traits>

#include "album/binary_codec.h"
#include "album/dyn_array.h"

namespace brindle {

class JsonDump {
public:
    // Opens the top-level object; fields follow through operator().
    JsonDump() { out_ = "{"; }

    std::string finish() {
        out_ += "\n}\n";
        return out_;
    }

    template <class T>
    void operator()(const char* name, T& value) {
        key(name);
        write(value);
    }

    void null(const char* name) {
        key(name);
        out_ += "null";
    }

private:
    void key(const char* name) {
        out_ += first_ ? "\n" : ",\n";
        first_ = false;
        indent();
        out_ += quoted(name);
        out_ += ": ";
    }

    void indent() { out_.append(static_cast<std::size_t>(depth_) * 2, ' '); }

    static std::string quoted(const std::string& s) {
        std::string q = "\"";
        for (unsigned char c : s) {
            switch (c) {
                case '"': q += "\\\""; break;
                case '\\': q += "\\\\"; break;
                case '\n': q += "\\n"; break;
                case '\r': q += "\\r"; break;
                case '\t': q += "\\t"; break;
                default:
                    if (c < 0x20) {
                        char buf[8];
                        std::snprintf(buf, sizeof buf, "\\u%04x", c);
                        q += buf;
                    } else {
                        q += static_cast<char>(c);
                    }
            }
        }
        return q + "\"";
    }

    template <class T>
        requires std::is_arithmetic_v<T>
    void write(T v) {
        out_ += std::to_string(static_cast<std::conditional_t<std::is_signed_v<T>, long long, unsigned long long>>(v));
    }

    void write(const std::string& s) { out_ += quoted(s); }

    template <class T, std::size_t N>
    void write(std::array<T, N>& items) {
        out_ += "[";
        for (std::size_t i = 0; i < N; ++i) {
            if (i) out_ += ", ";
            element(items[i]);
        }
        out_ += "]";
    }

    template <class T>
    void write(DynArray<T>& array) {
        if (!array.allocated()) {
            out_ += "null";
            return;
        }
        out_ += "[";
        for (int i = 1; i <= array.upper(); ++i) {
            if (i > 1) out_ += ", ";
            element(array[i]);
        }
        out_ += "]";
    }

    template <class T>
        requires Visitable<JsonDump, T>
    void write(T& record) {
        out_ += "{";
        bool outerFirst = first_;
        first_ = true;
        ++depth_;
        visitFields(*this, record);
        --depth_;
        out_ += "\n";
        indent();
        out_ += "}";
        first_ = outerFirst;
    }

    template <class T>
    void element(T& item) {
        write(item);
    }

    std::string out_;
    int depth_ = 1;
    bool first_ = true;
};

}  // namespace brindle
