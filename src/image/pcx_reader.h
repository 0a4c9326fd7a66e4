// LoadPCX: our own PCX reader (see pcx_format.h for the layout).
#pragma once

#include <string>
#include <string_view>

#include "image/decoded_picture.h"

namespace brindle {

class LoadPCX : public DecodedPicture {
  public:
    // Reads the file; true when a picture came out. A failed load leaves
    // the object empty; `error` then says why.
    bool Load(const std::string& path, std::string* error = nullptr);
    bool LoadFromBytes(std::string_view bytes, std::string* error = nullptr);

    bool DrawPCX(const Surface& target, int x, int y, int width, int height) const {
        return draw(target, x, y, width, height);
    }

    // True once a file's header was a PCX header.
    bool IsPCX() const { return isPcx_; }
    int PCXWidth() const { return pixels_.Width(); }
    int PCXHeight() const { return pixels_.Height(); }
    bool Compressed() const { return compressed_; }
    int Bpp() const { return bpp_; }

  private:
    bool isPcx_ = false;
    bool compressed_ = false;
    int bpp_ = 0;
};

}  // namespace brindle
