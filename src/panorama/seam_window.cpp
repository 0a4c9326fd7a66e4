#include "panorama/seam_window.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <functional>

#include "editor/qimage_dib.h"
#include "panorama/seam_overlay.h"

namespace brindle::panorama {

namespace {

// The right picture may be moved this far up or down.
constexpr int kMaxYOffset = 20;
// cmdXMinus keeps at least this overlap column.
constexpr int kMinXButton = 20;

}  // namespace

// Picture1: the overlay scaled to fit, dragged with the mouse.
class SeamView : public QWidget {
public:
    using Drag = std::function<void(int dx, int dy)>;
    SeamView(Drag press, Drag move, QWidget* parent) : QWidget(parent), press_(std::move(press)), move_(std::move(move)) {
        setMinimumSize(360, 300);
        setCursor(Qt::SizeAllCursor);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    }
    void setImage(const QImage& image) {
        image_ = image;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), QColor(0x30, 0x30, 0x30));
        if (image_.isNull()) return;
        p.setRenderHint(QPainter::SmoothPixmapTransform);
        p.drawImage(target(), image_);
    }
    void mousePressEvent(QMouseEvent* e) override {
        if (e->button() != Qt::LeftButton) return;
        pressed_ = e->position();
        dragging_ = true;
        press_(0, 0);
    }
    void mouseMoveEvent(QMouseEvent* e) override {
        if (!dragging_) return;
        const double s = scale();
        const QPointF d = (e->position() - pressed_) / s;
        move_(static_cast<int>(std::lround(d.x())), static_cast<int>(std::lround(d.y())));
    }
    void mouseReleaseEvent(QMouseEvent*) override { dragging_ = false; }

private:
    double scale() const {
        if (image_.isNull()) return 1.0;
        return std::min(double(width()) / image_.width(), double(height()) / image_.height());
    }
    QRectF target() const {
        const double s = scale();
        const QSizeF size(image_.width() * s, image_.height() * s);
        return QRectF(QPointF((width() - size.width()) / 2, (height() - size.height()) / 2), size);
    }

    Drag press_, move_;
    QImage image_;
    QPointF pressed_;
    bool dragging_ = false;
};

SeamWindow::SeamWindow(Prompter& prompter, Language lang, QWidget* parent)
    : QDialog(parent), prompter_(prompter), lang_(lang) {
    setObjectName("frmMakePanoNaht");
    setModal(true);
    auto* root = new QVBoxLayout(this);

    picture1_ = new SeamView(
        [this](int, int) {
            pressX_ = x();
            pressY_ = y();
        },
        [this](int dx, int dy) { dragBy(dx, dy); }, this);
    picture1_->setObjectName("Picture1");
    root->addWidget(picture1_, 1);

    auto* values = new QGridLayout;
    lblKoordinaten_ = new QLabel(this);
    lblKoordinaten_->setObjectName("lblKoordinaten");
    values->addWidget(lblKoordinaten_, 0, 0, 1, 4);
    auto addRow = [&](int row, QLabel*& name, const char* nameId, QLineEdit*& edit, const char* editId, QLabel*& old,
                      const char* oldId) {
        name = new QLabel(this);
        name->setObjectName(nameId);
        edit = new QLineEdit(this);
        edit->setObjectName(editId);
        edit->setValidator(new QIntValidator(-99999, 99999, edit));
        edit->setMaximumWidth(90);
        old = new QLabel(this);
        old->setObjectName(oldId);
        old->setMinimumWidth(90);
        values->addWidget(name, row, 0);
        values->addWidget(edit, row, 1);
        values->addWidget(old, row, 2);
        connect(edit, &QLineEdit::textEdited, this, [this] { valuesEdited(); });
    };
    addRow(1, lblX_, "lblX", txtX_, "txtX", lblXAlt_, "lblXAlt");
    addRow(2, lblY_, "lblY", txtY_, "txtY", lblYAlt_, "lblYAlt");

    auto button = [this](QPushButton*& b, const char* id, void (SeamWindow::*slot)()) {
        b = new QPushButton(this);
        b->setObjectName(id);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, slot);
    };
    button(cmdXMinus_, "cmdXMinus", &SeamWindow::cmdXMinus_Click);
    button(cmdXPlus_, "cmdXPlus", &SeamWindow::cmdXPlus_Click);
    button(cmdYMinus_, "cmdYMinus", &SeamWindow::cmdYMinus_Click);
    button(cmdYPlus_, "cmdYPlus", &SeamWindow::cmdYPlus_Click);
    values->addWidget(cmdXMinus_, 1, 3);
    values->addWidget(cmdXPlus_, 1, 4);
    values->addWidget(cmdYMinus_, 2, 3);
    values->addWidget(cmdYPlus_, 2, 4);

    lblIndex_ = new QLabel(this);
    lblIndex_->setObjectName("lblIndex");
    QFont bold = lblIndex_->font();
    bold.setBold(true);
    lblIndex_->setFont(bold);
    picPhase0_ = new QLabel(this);
    picPhase0_->setObjectName("PicPhase0");
    picPhase0_->setFixedSize(16, 16);
    auto* indexRow = new QHBoxLayout;
    indexRow->addWidget(picPhase0_);
    indexRow->addWidget(lblIndex_);
    indexRow->addStretch();
    values->addLayout(indexRow, 0, 5, 1, 1);
    values->setColumnStretch(5, 1);
    root->addLayout(values);

    lblHint_ = new QLabel(this);
    lblHint_->setObjectName("lblHint");
    lblHint_->setWordWrap(true);
    root->addWidget(lblHint_);

    auto* bar = new QHBoxLayout;
    button(cmdUebernehmeAlt_, "cmdÜbernehmeAlt", &SeamWindow::cmdUebernehmeAlt_Click);
    cmdBack_ = new QPushButton(this);
    cmdBack_->setObjectName("cmdBack");
    cmdBack_->setAutoDefault(false);
    // Held down, the pair shows as stored; let go, as edited.
    connect(cmdBack_, &QPushButton::pressed, this, [this] { showPair(oldX_, oldY_); });
    connect(cmdBack_, &QPushButton::released, this, [this] { redraw(); });
    button(cmdFertig_, "cmdFertig", &SeamWindow::cmdFertig_Click);
    cmdFertig_->setDefault(true);
    cmdAbbrechen_ = new QPushButton(this);
    cmdAbbrechen_->setObjectName("cmdAbbrechen");
    cmdAbbrechen_->setAutoDefault(false);
    connect(cmdAbbrechen_, &QPushButton::clicked, this, &QDialog::reject);
    bar->addWidget(cmdUebernehmeAlt_);
    bar->addWidget(cmdBack_);
    bar->addStretch();
    bar->addWidget(cmdFertig_);
    bar->addWidget(cmdAbbrechen_);
    root->addLayout(bar);

    resize(900, 640);
    retranslate();
}

void SeamWindow::setLanguage(Language lang) {
    lang_ = lang;
    retranslate();
}

void SeamWindow::retranslate() {
    setWindowTitle(t("Brindlesee Panorama-Bearbeitung", "Brindlesee panoramic editing interface"));
    lblKoordinaten_->setText(t("Koordinaten:              Aktuell               Bisher",
                               "Coordinates:              Actual               Until Now"));
    lblX_->setText("X:");
    lblY_->setText("Y:");
    lblIndex_->setText(QString(t("Naht ", "Seam ")) + QString::number(number_));
    cmdXMinus_->setText(t("◀ X − 1", "◀ X − 1"));
    cmdXPlus_->setText(t("X + 1 ▶", "X + 1 ▶"));
    cmdYMinus_->setText(t("▲ Y − 1", "▲ Y − 1"));
    cmdYPlus_->setText(t("Y + 1 ▼", "Y + 1 ▼"));
    cmdUebernehmeAlt_->setText(t("Alte Werte übernehmen", "Restore old values"));
    cmdBack_->setText(t("Vorher zeigen", "Show before"));
    cmdFertig_->setText(t("Fertig", "Ready"));
    cmdAbbrechen_->setText(t("Abbrechen", "Cancel"));
    lblHint_->setText(t("Ziehen Sie das Bild mit der Maus oder verschieben Sie es mit den Knöpfen, bis keine "
                        "Doppelbilder mehr zu sehen sind.",
                        "Drag the picture with the mouse or move it with the buttons until no double images "
                        "remain."));
}

void SeamWindow::SetPicture(const cDIBSection& left, const cDIBSection& right, PanoBild& record, int number) {
    left_ = &left;
    right_ = &right;
    leftImage_ = editor::imageOfDib(left);
    rightImage_ = editor::imageOfDib(right);
    record_ = &record;
    number_ = number;
    oldX_ = record.xVersatz;
    oldY_ = record.yVersatz;
    lblXAlt_->setText(QString::number(oldX_));
    lblYAlt_->setText(QString::number(oldY_));
    retranslate();
    setValues(oldX_, oldY_);
}

int SeamWindow::x() const { return txtX_->text().toInt(); }
int SeamWindow::y() const { return txtY_->text().toInt(); }

void SeamWindow::setValues(int x, int y) {
    const int maxX = left_ ? std::max(1, left_->Width() - 1) : x;
    x = std::clamp(x, std::min(1, maxX), maxX);
    y = std::clamp(y, -kMaxYOffset, kMaxYOffset);
    txtX_->setText(QString::number(x));
    txtY_->setText(QString::number(y));
    redraw();
}

// A typed value counts once it is a number; the field keeps what was typed.
void SeamWindow::valuesEdited() {
    bool okX = false, okY = false;
    txtX_->text().toInt(&okX);
    txtY_->text().toInt(&okY);
    if (okX && okY) redraw();
}

void SeamWindow::redraw() { showPair(x(), y()); }

void SeamWindow::showPair(int x, int y) {
    if (!left_ || !right_) return;
    overlay_ = editor::imageOfDib(seamOverlay(*left_, *right_, x, y));
    picture1_->setImage(pairView(x, y));
    const bool changed = x != oldX_ || y != oldY_;
    picPhase0_->setStyleSheet(changed ? "background:#E0A020; border-radius:8px;" : "background:#3CB043; border-radius:8px;");
}

// The whole pair for orientation, dimmed, with the overlay on the band.
QImage SeamWindow::pairView(int x, int y) const {
    const int topLeft = std::max(0, -y), topRight = std::max(0, y);
    const int w = std::max(leftImage_.width(), x + rightImage_.width());
    const int h = std::max(topLeft + leftImage_.height(), topRight + rightImage_.height());
    QImage view(w, h, QImage::Format_RGB32);
    view.fill(QColor(0x30, 0x30, 0x30));
    QPainter p(&view);
    p.setOpacity(0.45);
    p.drawImage(0, topLeft, leftImage_);
    p.drawImage(x, topRight, rightImage_);
    p.setOpacity(1.0);
    p.drawImage(x, topLeft, overlay_);
    p.setPen(QPen(QColor(0xFF, 0xD0, 0x40), 1, Qt::DashLine));
    p.drawRect(QRect(x, topLeft, overlay_.width() - 1, overlay_.height() - 1));
    return view;
}

void SeamWindow::cmdXMinus_Click() {
    if (x() > kMinXButton) setValues(x() - 1, y());
}
void SeamWindow::cmdXPlus_Click() { setValues(x() + 1, y()); }
void SeamWindow::cmdYMinus_Click() { setValues(x(), y() - 1); }
void SeamWindow::cmdYPlus_Click() { setValues(x(), y() + 1); }
void SeamWindow::cmdUebernehmeAlt_Click() { setValues(oldX_, oldY_); }

void SeamWindow::dragBy(int dx, int dy) {
    setValues(pressX_ + dx, pressY_ + dy);
}

void SeamWindow::cmdFertig_Click() {
    if (record_) {
        record_->xVersatz = x();
        record_->yVersatz = y();
        record_->gematcht = 1;
    }
    accept();
}

}  // namespace brindle::panorama
