// The German and English caption of each control of a tool window, kept
// where the control is made, so a language switch reaches every one.
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <vector>

#include "album/language.h"

namespace brindle::studio {

class Captions {
  public:
    // Labels, buttons, check and option boxes and group boxes.
    void add(QWidget* widget, const char* german, const char* english);
    // The tool tip of a widget.
    void addTip(QWidget* widget, const char* german, const char* english);
    void apply(Language language) const;

  private:
    struct Entry {
        QPointer<QWidget> widget;
        QString german;
        QString english;
        bool tip;
    };
    std::vector<Entry> entries_;
};

inline QString trq(Language language, const char* german, const char* english) {
    return QString::fromUtf8(tr(language, german, english));
}

}  // namespace brindle::studio
