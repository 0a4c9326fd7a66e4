#include "editor/search_form.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "editor/page_canvas.h"
#include "editor/qt_text_metrics.h"

namespace brindle::editor {

namespace {
constexpr int kLinkRole = Qt::UserRole + 1;
constexpr int kMostRows = 6;
}  // namespace

SearchForm::SearchForm(const SearchElement& element, Language language, Search search, Open open, QWidget* parent)
    : QWidget(parent), language_(language), search_(std::move(search)), open_(std::move(open)) {
    setObjectName("SuchMaschine");

    caption_ = new QLabel(QString::fromStdString(element.caption.empty() ? t("Suchen", "Search") : element.caption), this);
    caption_->setObjectName("lblCaption");
    caption_->setFont(qtFont(element.font, element.font.size > 0 ? element.font.size : 10));
    caption_->setStyleSheet(QString("color: %1").arg(qtColor(element.font.color).name()));
    eingabe_ = new QLineEdit(this);
    eingabe_->setObjectName("eingabe");
    eingabe_->setPlaceholderText(t("Suchbegriffe", "Search words"));
    cmdSuchen_ = new QPushButton(t("Suche starten", "Start search"), this);
    cmdSuchen_->setObjectName("cmdSuchen");
    cmdSuchen_->setDefault(true);
    cmdLoeschen_ = new QPushButton(t("Eingabe löschen", "Delete input"), this);
    cmdLoeschen_->setObjectName("cmdLoeschen");
    chkGross_ = new QCheckBox(t("Groß-/Kleinschreibung", "Upper and lower case"), this);
    chkGross_->setObjectName("lc");

    auto* row = new QHBoxLayout;
    row->setSpacing(6);
    row->addWidget(eingabe_, 1);
    row->addWidget(cmdSuchen_);
    row->addWidget(cmdLoeschen_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->setSpacing(4);
    layout->addWidget(caption_);
    layout->addLayout(row);
    layout->addWidget(chkGross_);
    layout->addStretch(1);

    // The list lies on the canvas, so it may reach below the form's box.
    results_ = new QListWidget(parent);
    results_->setObjectName("lstSuchergebnis");
    results_->setSpacing(2);
    results_->hide();
    connect(results_, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        const std::string link = item->data(kLinkRole).toString().toStdString();
        if (link.empty()) return;
        results_->hide();
        if (open_) open_(link);
    });
    connect(cmdSuchen_, &QPushButton::clicked, this, [this] { suche(); });
    connect(eingabe_, &QLineEdit::returnPressed, this, [this] { suche(); });
    connect(cmdLoeschen_, &QPushButton::clicked, this, [this] {
        eingabe_->clear();
        eingabe_->setFocus();
        results_->hide();
    });
}

SearchForm::~SearchForm() { delete results_.data(); }

void SearchForm::suche() {
    results_->hide();
    if (!search_) return;
    const std::optional<std::vector<std::string>> found =
        search_(eingabe_->text().toStdString(), chkGross_->isChecked());
    if (!found) return;
    results_->clear();
    for (const std::string& link : *found) {
        QString title = QString::fromStdString(link);
        if (title.endsWith(".htm", Qt::CaseInsensitive)) title.chop(4);
        auto* item = new QListWidgetItem(title, results_);
        item->setData(kLinkRole, QString::fromStdString(link));
    }
    if (found->empty()) {
        auto* item = new QListWidgetItem(t("Keine passende Seite gefunden.", "No matching page found."), results_);
        item->setFlags(Qt::NoItemFlags);
    }
    placeResults();
    results_->show();
    results_->raise();
}

void SearchForm::placeResults() {
    if (!results_) return;
    const int rows = std::clamp(results_->count(), 1, kMostRows);
    const int rowHeight = std::max(results_->fontMetrics().height() + 8, results_->sizeHintForRow(0));
    results_->setGeometry(x(), y() + height() + 2, width(), rows * rowHeight + 2 * results_->frameWidth() + 8);
}

void SearchForm::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    placeResults();
}

void SearchForm::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    placeResults();
}

void SearchForm::paintEvent(QPaintEvent*) {
    // A white card, as the canvas draws the element outside play.
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(0x6B, 0x78, 0x88), 1));
    p.setBrush(Qt::white);
    p.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
}

void SearchForm::hideEvent(QHideEvent* event) {
    if (results_) results_->hide();
    QWidget::hideEvent(event);
}

}  // namespace brindle::editor
