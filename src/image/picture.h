// The picture type: what the loaders deliver and the writers take. A
// picture is a shared, unchangeable cDIBSection; copies are cheap.
#pragma once

#include <cstdint>
#include <memory>

namespace brindle {

class cDIBSection;

class Picture {
  public:
    Picture() = default;
    // Takes a copy of `dib`'s pixels; an empty section gives no picture.
    static Picture fromDib(const cDIBSection& dib);
    static Picture fromDib(cDIBSection&& dib);

    explicit operator bool() const { return dib_ != nullptr; }
    int Width() const;
    int Height() const;
    // The pixels; nullptr when there is no picture. Valid as long as a copy
    // of this picture lives.
    const cDIBSection* Handle() const { return dib_.get(); }

  private:
    std::shared_ptr<const cDIBSection> dib_;
};

}  // namespace brindle
