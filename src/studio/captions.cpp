#include "studio/captions.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>

namespace brindle::studio {

void Captions::add(QWidget* widget, const char* german, const char* english) {
    entries_.push_back({widget, QString::fromUtf8(german), QString::fromUtf8(english), false});
}

void Captions::addTip(QWidget* widget, const char* german, const char* english) {
    entries_.push_back({widget, QString::fromUtf8(german), QString::fromUtf8(english), true});
}

void Captions::apply(Language language) const {
    for (const Entry& e : entries_) {
        if (!e.widget) continue;
        const QString& text = language == Language::German ? e.german : e.english;
        if (e.tip) {
            e.widget->setToolTip(text);
        } else if (auto* label = qobject_cast<QLabel*>(e.widget)) {
            label->setText(text);
        } else if (auto* button = qobject_cast<QAbstractButton*>(e.widget)) {
            button->setText(text);
        } else if (auto* group = qobject_cast<QGroupBox*>(e.widget)) {
            group->setTitle(text);
        }
    }
}

}  // namespace brindle::studio
