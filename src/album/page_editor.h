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

// Pages without windows, for the command line and the fuzz targets: the
// record is all there is, only the caption is kept.
class WindowlessEditor : public PageEditor {
public:
    void show() override {}
    void activate() override {}
    void unload() override {}
    void setCaption(const std::string& c) override { caption_ = c; }
    std::string caption() const override { return caption_; }
    void setRemoveMenuText(const std::string&) override {}

private:
    std::string caption_;
};

class WindowlessEditorFactory : public PageEditorFactory {
public:
    std::unique_ptr<PageEditor> create(int, std::string&) override { return std::make_unique<WindowlessEditor>(); }
};

}  // namespace brindle
