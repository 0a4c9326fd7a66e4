// Finding and reading the named controls of a design panel page.
#pragma once

#include <QAbstractButton>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>
#include <QWidget>

namespace brindle::studio::panel {

inline QVBoxLayout* pageLayout(QWidget* page) { return static_cast<QVBoxLayout*>(page->layout()); }

template <class T>
T* child(QWidget* page, const char* name) {
    return page->findChild<T*>(QString::fromUtf8(name));
}

// A number box's or slider's value; 0 when the page has no such control.
inline int valueOf(QWidget* page, const char* name) {
    if (auto* box = child<QSpinBox>(page, name)) return box->value();
    if (auto* slider = child<QSlider>(page, name)) return slider->value();
    return 0;
}

inline bool checked(QWidget* page, const char* name) {
    auto* button = child<QAbstractButton>(page, name);
    return button && button->isChecked();
}

}  // namespace brindle::studio::panel
