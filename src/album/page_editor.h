// The album logic's view of an open page window. The GUI implements it; the
// flows only show, activate, caption and unload.
#pragma once

#include <memory>
#include <string>

namespace brindle {

class PageEditor {
public:
    virtual ~PageEditor() = default;
    virtual void show() = 0;      // shows the page from its record
    virtual void activate() = 0;
    virtual void unload() = 0;    // closes the window without questions
    virtual void setCaption(const std::string& caption) = 0;
    virtual std::string caption() const = 0;
    virtual void setRemoveMenuText(const std::string& text) = 0;
};

class PageEditorFactory {
public:
    virtual ~PageEditorFactory() = default;
    // A new editor for the page of `slot`, told its slot; nullptr with
    // `error` set when it cannot be made.
    virtual std::unique_ptr<PageEditor> create(int slot, std::string& error) = 0;
};

}  // namespace brindle
