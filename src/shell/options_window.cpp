#include "shell/options_window.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QTabWidget>
#include <QVBoxLayout>

namespace brindle::shell {

namespace {

// Typed characters other than digits, backspace and enter never reach a number box.
class NumericKeys : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
        const auto* key = static_cast<QKeyEvent*>(event);
        const QString text = key->text();
        if (text.isEmpty() || (key->modifiers() & Qt::ControlModifier)) return false;
        const int ch = text.at(0).unicode();
        const bool printable = ch >= 32 && ch != 127;
        return printable && !isNumericKey(ch);
    }
};

QColor qtColour(Color c) { return QColor(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF); }
Color albumColour(const QColor& c) {
    return Color(c.red()) | (Color(c.green()) << 8) | (Color(c.blue()) << 16);
}

QIcon swatch(Color c) {
    QPixmap pm(28, 16);
    pm.fill(qtColour(c));
    QPainter p(&pm);
    p.setPen(QColor(0, 0, 0, 120));
    p.drawRect(pm.rect().adjusted(0, 0, -1, -1));
    return QIcon(pm);
}

}  // namespace

OptionsWindow::OptionsWindow(const OptionsDialogValues& values, Language language, QWidget* parent)
    : QDialog(parent), initial_(values) {
    setObjectName("frmVorlage");
    auto* layout = new QVBoxLayout(this);
    tabs_ = new QTabWidget(this);
    tabs_->setObjectName("tabOptionen");
    for (const OptionTab& tab : optionTabs()) tabs_->addTab(makeTab(tab), QString());
    layout->addWidget(tabs_, 1);
    buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    // The album's look, with the values shown, goes into the catalogue.
    saveTemplate_ = buttons_->addButton(QString(), QDialogButtonBox::ActionRole);
    saveTemplate_->setObjectName("cmdVorlageSpeichern");
    connect(saveTemplate_, &QPushButton::clicked, this, [this] {
        templateWanted_ = true;
        accept();
    });
    layout->addWidget(buttons_);
    showValues(values);
    Sprachumschaltung(language);
    setMinimumWidth(560);
}

QWidget* OptionsWindow::makeTab(const OptionTab& tab) {
    auto* page = new QWidget(tabs_);
    page->setObjectName(QString("tab_") + tab.id);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(14, 14, 14, 14);
    column->setSpacing(12);
    auto* choices = new QButtonGroup(page);
    for (const OptionControl& c : optionControls()) {
        if (std::string(c.tab) != tab.id) continue;
        QGroupBox*& group = groups_[{tab.id, c.group}];
        if (!group) {
            group = new QGroupBox(page);
            group->setLayout(new QFormLayout);
            column->addWidget(group);
        }
        auto* form = static_cast<QFormLayout*>(group->layout());
        form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
        form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        QWidget* w = makeControl(c, group);
        if (c.kind == OptionKind::Choice) choices->addButton(static_cast<QRadioButton*>(w));
        if (c.kind == OptionKind::Check || c.kind == OptionKind::Choice) {
            form->addRow(w);
        } else {
            auto* label = new QLabel(group);
            label->setBuddy(w);
            labels_[c.control] = label;
            form->addRow(label, w);
        }
    }
    if (std::string(tab.id) == "edit") {
        languageGroup_ = new QGroupBox(page);
        auto* form = new QFormLayout(languageGroup_);
        form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
        language_ = new QComboBox(languageGroup_);
        language_->setObjectName("cboSprache");
        language_->addItem("Deutsch", "deutsch");
        language_->addItem("English", "englisch");
        languageLabel_ = new QLabel(languageGroup_);
        languageLabel_->setBuddy(language_);
        form->addRow(languageLabel_, language_);
        column->addWidget(languageGroup_);
    }
    column->addStretch(1);
    return page;
}

QWidget* OptionsWindow::makeControl(const OptionControl& c, QWidget* parent) {
    QWidget* w = nullptr;
    switch (c.kind) {
        case OptionKind::Check: w = new QCheckBox(parent); break;
        case OptionKind::Choice: w = new QRadioButton(parent); break;
        case OptionKind::Number: {
            auto* box = new QLineEdit(parent);
            box->setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9]*"), box));
            box->installEventFilter(new NumericKeys(box));
            box->setAlignment(Qt::AlignRight);
            box->setFixedWidth(c.maximum > 9999 ? 96 : 72);
            w = box;
            break;
        }
        case OptionKind::Text: {
            auto* box = new QLineEdit(parent);
            box->setMinimumWidth(260);
            w = box;
            break;
        }
        case OptionKind::Colour: {
            auto* button = new QPushButton(parent);
            button->setMinimumWidth(120);
            const QString name = c.control;
            connect(button, &QPushButton::clicked, this, [this, name] { pickColour(name); });
            w = button;
            break;
        }
    }
    w->setObjectName(QString::fromUtf8(c.control));
    controls_[QString::fromUtf8(c.control)] = w;
    return w;
}

QWidget* OptionsWindow::control(const QString& name) const {
    auto it = controls_.find(name);
    return it == controls_.end() ? nullptr : it->second;
}

void OptionsWindow::showValues(const OptionsDialogValues& v) {
    for (const OptionControl& c : optionControls()) {
        QWidget* w = control(QString::fromUtf8(c.control));
        switch (c.kind) {
            case OptionKind::Check:
            case OptionKind::Choice: static_cast<QAbstractButton*>(w)->setChecked(optionBool(v, c)); break;
            case OptionKind::Number:
                static_cast<QLineEdit*>(w)->setText(QString::number(optionNumber(v, c)));
                break;
            case OptionKind::Text:
                static_cast<QLineEdit*>(w)->setText(QString::fromStdString(optionText(v, c)));
                break;
            case OptionKind::Colour: setColour(QString::fromUtf8(c.control), optionColour(v, c)); break;
        }
    }
    language_->setCurrentIndex(v.language == "englisch" ? 1 : 0);
}

OptionsDialogValues OptionsWindow::values() const {
    OptionsDialogValues v = initial_;
    for (const OptionControl& c : optionControls()) {
        QWidget* w = control(QString::fromUtf8(c.control));
        switch (c.kind) {
            case OptionKind::Check:
            case OptionKind::Choice: setOptionBool(v, c, static_cast<QAbstractButton*>(w)->isChecked()); break;
            case OptionKind::Number:
                setOptionNumber(v, c, numberFromText(static_cast<QLineEdit*>(w)->text().toStdString(), c.maximum));
                break;
            case OptionKind::Text: setOptionText(v, c, static_cast<QLineEdit*>(w)->text().toStdString()); break;
            case OptionKind::Colour: setOptionColour(v, c, w->property("colour").toUInt()); break;
        }
    }
    v.language = language_->currentData().toString().toStdString();
    return v;
}

void OptionsWindow::setColour(const QString& name, Color colour) {
    auto* button = qobject_cast<QPushButton*>(control(name));
    if (!button) return;
    button->setProperty("colour", uint(colour & 0xFFFFFF));
    button->setIcon(swatch(colour));
    button->setIconSize(QSize(28, 16));
    button->setText(qtColour(colour).name().toUpper());
}

void OptionsWindow::pickColour(const QString& name) {
    const QColor chosen = QColorDialog::getColor(qtColour(control(name)->property("colour").toUInt()), this,
                                                 labels_[name]->text().remove('&'));
    if (chosen.isValid()) setColour(name, albumColour(chosen));
}

void OptionsWindow::Sprachumschaltung(Language language) {
    lang_ = language;
    const bool de = language == Language::German;
    setWindowTitle(de ? "Optionen" : "Options");
    int i = 0;
    for (const OptionTab& tab : optionTabs()) tabs_->setTabText(i++, QString::fromUtf8(de ? tab.german : tab.english));
    for (const OptionControl& c : optionControls()) {
        const QString caption = QString::fromUtf8(de ? c.german : c.english);
        groups_[{c.tab, c.group}]->setTitle(QString::fromUtf8(de ? c.group : c.groupEnglish));
        if (auto it = labels_.find(c.control); it != labels_.end()) it->second->setText(caption);
        else static_cast<QAbstractButton*>(control(QString::fromUtf8(c.control)))->setText(caption);
    }
    languageGroup_->setTitle(de ? "Sprache" : "Language");
    languageLabel_->setText(de ? "Spra&che" : "Lan&guage");
    buttons_->button(QDialogButtonBox::Ok)->setText("OK");
    buttons_->button(QDialogButtonBox::Cancel)->setText(de ? "Abbrechen" : "Cancel");
    saveTemplate_->setText(de ? "Als &Vorlage speichern ..." : "Save as &template ...");
}

}  // namespace brindle::shell
