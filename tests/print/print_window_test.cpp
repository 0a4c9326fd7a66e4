// The print window on six synthetic pictures: arrange, typed values, step
// buttons, dragging, saving and loading a layout, printing to a PDF whose
// pictures stand in their boxes, and the language switch. `screenshots`
// saves the window in German and English (run by hand under Xvfb).
#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "image/picture_io.h"
#include "print/print_file.h"
#include "print/print_sheet_window.h"
#include "print/sheet_preview.h"
#include "support/scripted_prompter.h"

using namespace brindle;
using brindle::print::Box;
using brindle::print::Field;
using brindle::print::PrintSheetWindow;

namespace {

struct Rgb {
    int r, g, b;
};
const Rgb kColours[6] = {{255, 0, 0}, {0, 160, 0}, {0, 0, 255}, {255, 200, 0}, {0, 200, 200}, {160, 0, 160}};

std::string readAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

}  // namespace

class PrintWindowTest : public QObject {
    Q_OBJECT
    QTemporaryDir* dir_ = nullptr;
    std::string home_;
    std::vector<std::string> pictures_;
    test::ScriptedPrompter prompter_;

    std::string path(const std::string& name) const { return home_ + "/" + name; }

    std::unique_ptr<PrintSheetWindow> openWindow(Language lang = Language::English) {
        auto w = std::make_unique<PrintSheetWindow>(pictures_, prompter_, lang);
        w->printer().setPageSize(QPageSize(QPageSize::A4));
        w->printer().setPageOrientation(QPageLayout::Portrait);
        w->resize(900, 640);
        w->show();
        w->cmdNeuBerechnen_Click();
        return w;
    }

    template <class T>
    static T* child(QWidget& w, const QString& name) {
        T* c = w.findChild<T*>(name);
        if (!c) qFatal("no %s", qPrintable(name));
        return c;
    }

    static void type(QWidget& w, const QString& name, const QString& text) {
        auto* e = child<QLineEdit>(w, name);
        e->setText(text);
        emit e->editingFinished();
    }

private slots:
    void init() {
        dir_ = new QTemporaryDir;
        home_ = dir_->path().toStdString();
        qputenv("BRINDLESEE_HOME", QByteArray::fromStdString(home_));
        prompter_ = {};
        pictures_.clear();
        // Landscape and portrait pictures, each one flat colour.
        for (int i = 0; i < 6; ++i) {
            const int w = i % 2 ? 400 : 600, h = i % 2 ? 600 : 400;
            cDIBSection dib;
            QVERIFY(dib.Create(w, h));
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    std::uint8_t* p = dib.hdc().row(y) + 3 * x;
                    p[0] = static_cast<std::uint8_t>(kColours[i].b);
                    p[1] = static_cast<std::uint8_t>(kColours[i].g);
                    p[2] = static_cast<std::uint8_t>(kColours[i].r);
                }
            pictures_.push_back(path("picture" + std::to_string(i + 1) + ".bmp"));
            QVERIFY(SaveDIBFile(dib, pictures_.back(), 90).ok);
        }
    }
    void cleanup() { delete dir_; }

    void arrangeAndTypedValues() {
        auto w = openWindow();
        auto& layout = w->layout();
        QCOMPARE(layout.count(), std::size_t{6});
        QCOMPARE(child<QLabel>(*w, "lblStatus")->text(), QString("Finish..."));
        for (const Box& b : layout.boxes()) {
            QVERIFY(b.left >= 0 && b.top >= 0);
            QVERIFY(b.right() <= 210.01F && b.bottom() <= 297.01F);
        }
        QCOMPARE(child<QLineEdit>(*w, "txtLinks")->text(), QString("0.50"));
        type(*w, "txtBreiteAbs", "50");
        QCOMPARE(layout.box(0).width, 50.0F);
        QCOMPARE(layout.box(0).height, 33.33F);  // 600 x 400 keeps its proportions
        QCOMPARE(child<QLineEdit>(*w, QString::fromUtf8("txtHöheAbs"))->text(), QString("33.33"));
        type(*w, "txtOben", "12,5");
        QCOMPARE(layout.box(0).top, 12.5F);
        QTest::mouseClick(child<QPushButton>(*w, "cmdLinksPlus"), Qt::LeftButton);
        QTest::mouseClick(child<QPushButton>(*w, "cmdLinksMinusSmall"), Qt::LeftButton);
        QCOMPARE(layout.box(0).left, 9.5F);
        const Box second = layout.box(1);
        child<QCheckBox>(*w, "chkAllBilerMitNehmen")->setChecked(true);
        QTest::mouseClick(child<QPushButton>(*w, "cmdObenPlusSmall"), Qt::LeftButton);
        QCOMPARE(layout.box(1).top, second.top + 1.0F);
        QTest::mouseClick(child<QPushButton>(*w, "cmdDrehen"), Qt::LeftButton);
        QVERIFY(layout.box(0).rotated);
        QCOMPARE(layout.box(0).width, 33.33F);
    }

    void dragMovesTheFocusedBox() {
        auto w = openWindow();
        auto& preview = w->preview();
        const QRectF r = preview.boxRect(2);
        const QPointF from = r.center();
        const QPointF to = from + QPointF(20, 30);
        QMouseEvent press(QEvent::MouseButtonPress, from, preview.mapToGlobal(from), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&preview, &press);
        QCOMPARE(preview.focus(), 2);
        QMouseEvent move(QEvent::MouseMove, to, preview.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(&preview, &move);
        QMouseEvent release(QEvent::MouseButtonRelease, to, preview.mapToGlobal(to), Qt::LeftButton,
                            Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&preview, &release);
        const QRectF now = preview.boxRect(2);
        QVERIFY2(std::abs(now.left() - (r.left() + 20)) < 1 && std::abs(now.top() - (r.top() + 30)) < 1,
                 "the box follows the mouse");
        QCOMPARE(child<QLineEdit>(*w, "txtLinks")->text(), QString::number(w->layout().box(2).left, 'f', 2));
    }

    void saveAndLoadTheLayout() {
        auto w = openWindow();
        const std::vector<Box> arranged = w->layout().boxes();
        prompter_.files = {path("sheet.bsp")};
        w->cmdSave_Click();
        QCOMPARE(readAll(path("sheet.bsp")), print::encodeLayout(arranged));
        QCOMPARE(prompter_.asked.back(), std::string("save|2||"));
        w->cmdZentrieren_Click();
        QVERIFY(w->layout().boxes() != arranged);
        prompter_.files = {path("sheet.bsp")};
        w->cmdLoad_Click();
        QVERIFY(w->layout().boxes() == arranged);
        // A layout for fewer pictures is refused and changes nothing.
        QFile shortFile(QString::fromStdString(path("short.bsp")));
        QVERIFY(shortFile.open(QIODevice::WriteOnly));
        shortFile.write("1\r\n2\r\n3\r\n4\r\n");
        shortFile.close();
        w->cmdZentrieren_Click();
        const std::vector<Box> centred = w->layout().boxes();
        prompter_.files = {path("short.bsp")};
        w->cmdLoad_Click();
        QVERIFY(w->layout().boxes() == centred);
        QCOMPARE(prompter_.asked.back(),
                 "message|Load|48|" + path("short.bsp") + ": The print layout holds only 1 pictures, but 6 are selected.");
    }

    void printingPutsEachPictureInItsBox() {
        auto w = openWindow();
        const std::string pdf = path("sheet.pdf");
        w->printDialog = [&](QPrinter& p) {
            p.setOutputFormat(QPrinter::PdfFormat);
            p.setOutputFileName(QString::fromStdString(pdf));
            return true;
        };
        w->cmdDrucken_Click();
        const int dpi = 40;
        const std::string cmd = "pdftoppm -r " + std::to_string(dpi) + " -singlefile '" + pdf + "' '" +
                                path("page") + "'";
        QCOMPARE(std::system(cmd.c_str()), 0);
        const std::string bytes = readAll(path("page.ppm"));
        std::istringstream in(bytes);
        std::string magic;
        int width = 0, height = 0, maxval = 0;
        in >> magic >> width >> height >> maxval;
        in.get();
        QCOMPARE(magic, std::string("P6"));
        const auto* px = reinterpret_cast<const unsigned char*>(bytes.data()) + in.tellg();
        for (std::size_t i = 0; i < 6; ++i) {
            int left = width, top = height, right = -1, bottom = -1;
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x) {
                    const unsigned char* p = px + 3 * (y * width + x);
                    if (std::abs(p[0] - kColours[i].r) + std::abs(p[1] - kColours[i].g) +
                            std::abs(p[2] - kColours[i].b) > 90)
                        continue;
                    left = std::min(left, x);
                    top = std::min(top, y);
                    right = std::max(right, x + 1);
                    bottom = std::max(bottom, y + 1);
                }
            const Box& b = w->layout().box(i);
            const double k = dpi / 25.4;
            QVERIFY2(std::abs(left - b.left * k) <= 2 && std::abs(top - b.top * k) <= 2 &&
                         std::abs(right - b.right() * k) <= 2 && std::abs(bottom - b.bottom() * k) <= 2,
                     qPrintable(QString("picture %1 at %2,%3-%4,%5").arg(i + 1).arg(left).arg(top).arg(right).arg(bottom)));
        }
    }

    void languageSwitch() {
        auto w = openWindow(Language::German);
        QCOMPARE(child<QPushButton>(*w, "cmdNeuBerechnen")->text(), QString("Neu berechnen"));
        QCOMPARE(child<QLabel>(*w, "lblStatus")->text(), QString("Fertig..."));
        w->setLanguage(Language::English);
        QCOMPARE(child<QLabel>(*w, "lblStatus")->text(), QString("Finish..."));
        QCOMPARE(child<QPushButton>(*w, "cmdNeuBerechnen")->text(), QString("Arrange"));
        QCOMPARE(child<QPushButton>(*w, "cmdZentrieren")->text(), QString("Centering"));
        QCOMPARE(child<QCheckBox>(*w, "chkVerzerrungZulassen")->text(), QString("Distortion allow"));
        QCOMPARE(w->windowTitle(), QString("Print"));
    }

    void screenshots() {
        const QByteArray out = qgetenv("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS not set");
        // Photo-like pictures for a look at the window: sky, sun, hills and water.
        for (std::size_t i = 0; i < pictures_.size(); ++i) {
            const int w = i % 2 ? 400 : 600, h = i % 2 ? 600 : 400;
            QImage img(w, h, QImage::Format_RGB32);
            QPainter p(&img);
            QLinearGradient sky(0, 0, 0, h * 0.6);
            sky.setColorAt(0, QColor::fromHsv(int(200 + 25 * i) % 360, 120, 220));
            sky.setColorAt(1, QColor(0xE8, 0xC9, 0x9B));
            p.fillRect(img.rect(), sky);
            p.setPen(Qt::NoPen);
            p.setBrush(QColor(0xF6, 0xE2, 0x9A));
            p.drawEllipse(QPointF(w * (0.3 + 0.1 * i), h * 0.25), w * 0.07, w * 0.07);
            p.setBrush(QColor(0x4A, 0x6B, 0x3F));
            p.drawEllipse(QPointF(w * 0.3, h * 0.8), w * 0.55, h * 0.3);
            p.setBrush(QColor(0x2E, 0x6F, 0x9E));
            p.drawRect(QRectF(0, h * 0.88, w, h * 0.12));
            p.end();
            QVERIFY(img.save(QString::fromStdString(pictures_[i]), "BMP"));
        }
        auto w = openWindow();
        for (Language lang : {Language::German, Language::English}) {
            w->setLanguage(lang);
            QTest::qWait(200);
            w->grab().save(QString("%1/print-sheet-%2.png").arg(QString(out), lang == Language::German ? "de" : "en"));
        }
    }
};

QTEST_MAIN(PrintWindowTest)
#include "print_window_test.moc"
