#include "help/hint_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "help/hint_store.h"

namespace brindle::help {

HintWindow::HintWindow(int number, const std::string& text, Language language, QWidget* parent)
    : QDialog(parent), number_(number) {
    setObjectName("frmHinweis");
    const auto t = [language](const char* de, const char* en) {
        return QString::fromUtf8(brindle::tr(language, de, en));
    };
    setWindowTitle(t("Hinweis", "Hint"));
    auto* picSymbol = new QLabel(this);
    picSymbol->setObjectName("picSymbol");
    picSymbol->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(40, 40));
    picSymbol->setAlignment(Qt::AlignTop);
    // The texts end their lines Windows-style.
    QString words = QString::fromStdString(text);
    words.replace("\r\n", "\n").replace('\r', '\n');
    lblHinweis_ = new QLabel(words.trimmed(), this);
    lblHinweis_->setObjectName("lblHinweis");
    lblHinweis_->setWordWrap(true);
    lblHinweis_->setTextFormat(Qt::PlainText);
    chkNichtMehr_ =
        new QCheckBox(t("Diesen Hinweis nicht mehr anzeigen", "Don't show this hint again"), this);
    chkNichtMehr_->setObjectName("chkNichtMehr");
    cmdOK_ = new QPushButton("OK", this);
    cmdOK_->setObjectName("cmdOK");
    cmdOK_->setDefault(true);
    connect(cmdOK_, &QPushButton::clicked, this, &QDialog::accept);

    auto* top = new QHBoxLayout;
    top->addWidget(picSymbol);
    top->addSpacing(8);
    top->addWidget(lblHinweis_, 1);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(chkNichtMehr_);
    bottom->addStretch();
    bottom->addWidget(cmdOK_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 18, 18, 14);
    layout->addLayout(top, 1);
    layout->addSpacing(12);
    layout->addLayout(bottom);
    setMinimumWidth(460);
}

bool HintWindow::showHint(SettingsStore& store, int number, const std::string& text,
                          Language language, QWidget* parent) {
    if (hintSwitchedOff(store, number)) return false;
    HintWindow window(number, hintText(number, language, text), language, parent);
    window.exec();
    // The box counts however the window was closed.
    if (window.chkNichtMehr()->isChecked()) switchHintOff(store, number);
    return true;
}

}  // namespace brindle::help
