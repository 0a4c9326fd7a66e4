#include "help/help_viewer.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStyle>
#include <QTextBrowser>
#include <QVBoxLayout>

#include "help/help_pages.h"

namespace brindle::help {

namespace {

HelpViewer::ExternalOpener& externalOpener() {
    static HelpViewer::ExternalOpener opener = [](const QUrl& url) {
        QDesktopServices::openUrl(url);
    };
    return opener;
}

QPushButton* button(const char* name, QStyle::StandardPixmap icon, QWidget* parent) {
    auto* b = new QPushButton(parent);
    b->setObjectName(name);
    b->setIcon(parent->style()->standardIcon(icon));
    b->setAutoDefault(false);
    return b;
}

}  // namespace

void HelpViewer::setExternalOpener(ExternalOpener opener) { externalOpener() = std::move(opener); }

HelpViewer::HelpViewer(QString helpRoot, Language language, QWidget* parent)
    : QWidget(parent, Qt::Window), root_(std::move(helpRoot)), language_(language) {
    setObjectName("frmHilfe");
    if (!root_.isEmpty() && !root_.endsWith('/')) root_ += '/';
    cmdZurueck_ = button("cmdZurueck", QStyle::SP_ArrowBack, this);
    cmdVor_ = button("cmdVor", QStyle::SP_ArrowForward, this);
    cmdInhalt_ = button("cmdInhalt", QStyle::SP_DirHomeIcon, this);
    cmdSchliessen_ = button("cmdSchliessen", QStyle::SP_DialogCloseButton, this);
    browser_ = new QTextBrowser(this);
    browser_->setObjectName("txtHilfe");
    // Every link passes follow(), so web addresses never load in here.
    browser_->setOpenLinks(false);
    browser_->setOpenExternalLinks(false);

    auto* bar = new QHBoxLayout;
    bar->addWidget(cmdZurueck_);
    bar->addWidget(cmdVor_);
    bar->addWidget(cmdInhalt_);
    bar->addStretch();
    bar->addWidget(cmdSchliessen_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addWidget(browser_, 1);

    connect(cmdZurueck_, &QPushButton::clicked, browser_, &QTextBrowser::backward);
    connect(cmdVor_, &QPushButton::clicked, browser_, &QTextBrowser::forward);
    connect(cmdInhalt_, &QPushButton::clicked, this, [this] { showPage(kIndexPage); });
    connect(cmdSchliessen_, &QPushButton::clicked, this, &QWidget::close);
    connect(browser_, &QTextBrowser::anchorClicked, this, &HelpViewer::follow);
    connect(browser_, &QTextBrowser::sourceChanged, this, &HelpViewer::sourceShown);
    connect(browser_, &QTextBrowser::historyChanged, this, &HelpViewer::updateButtons);

    Sprachumschaltung();
    resize(840, 680);  // the pages' pictures are up to 760 pixels wide
}

void HelpViewer::showPage(const QString& id) {
    const std::string file = helpPageFile(root_.toStdString(), id.toStdString(), language_);
    if (file.empty()) {
        pageId_ = id;
        pageFile_.clear();
        browser_->setHtml(QString::fromStdString(missingPageHtml(id.toStdString(), language_)));
        updateButtons();
        return;
    }
    const QUrl url = QUrl::fromLocalFile(QString::fromStdString(file));
    if (browser_->source() == url) {
        sourceShown(url);
        browser_->reload();
    } else {
        browser_->setSource(url);
    }
}

void HelpViewer::setLanguage(Language language) {
    language_ = language;
    Sprachumschaltung();
    if (!pageId_.isEmpty()) showPage(pageId_);
}

void HelpViewer::Sprachumschaltung() {
    const auto t = [this](const char* de, const char* en) {
        return QString::fromUtf8(brindle::tr(language_, de, en));
    };
    setWindowTitle(t("Brindlesee Hilfe", "Brindlesee Help"));
    cmdZurueck_->setText(t("&Zurück", "&Back"));
    cmdVor_->setText(t("&Vor", "&Forward"));
    cmdInhalt_->setText(t("&Inhalt", "&Contents"));
    cmdSchliessen_->setText(t("&Schließen", "C&lose"));
}

void HelpViewer::follow(const QUrl& url) {
    if (isExternalAddress(url.toString().toStdString())) {
        externalOpener()(url);
        return;
    }
    const QUrl target = browser_->source().resolved(url);
    if (target.isLocalFile() && QFileInfo(target.toLocalFile()).isFile()) {
        browser_->setSource(target);
        return;
    }
    // A page missing in this language may exist in the other one.
    showPage(QFileInfo(target.path()).completeBaseName());
}

void HelpViewer::sourceShown(const QUrl& url) {
    pageFile_ = url.toLocalFile();
    pageId_ = QFileInfo(pageFile_).completeBaseName();
    updateButtons();
}

void HelpViewer::updateButtons() {
    cmdZurueck_->setEnabled(browser_->isBackwardAvailable());
    cmdVor_->setEnabled(browser_->isForwardAvailable());
}

}  // namespace brindle::help
