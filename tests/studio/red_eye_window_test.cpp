// The red-eye window offscreen: a double click corrects a pupil, the slider
// re-runs from the original, "Original image" restores, Save and Save as
// write (and a failed write keeps everything), the language switch, the
// selection run, the load failure and the question on closing.
// `screenshots` saves both modes in both languages (run by hand under Xvfb).
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "editor/qimage_dib.h"
#include "image/picture_io.h"
#include "studio/picture_view.h"
#include "studio/red_eye_window.h"
#include "support/scripted_prompter.h"

using namespace brindle;
using namespace brindle::studio;

namespace {

constexpr Rgb kSkin{224, 172, 140};
constexpr Rgb kPupil{190, 40, 45};
constexpr Rgb kDullPupil{120, 60, 70};

// Skin with two pupils of radius 5 at (35, 40) and (85, 40).
cDIBSection face() {
    cDIBSection dib;
    dib.Create(120, 90);
    for (int y = 0; y < 90; ++y)
        for (int x = 0; x < 120; ++x) {
            Rgb c = kSkin;
            if ((x - 35) * (x - 35) + (y - 40) * (y - 40) <= 25) c = kPupil;
            if ((x - 85) * (x - 85) + (y - 40) * (y - 40) <= 25) c = kDullPupil;
            setPixel(dib, x, y, c);
        }
    return dib;
}

// A portrait drawn like a flash photo: a soft background, hair, a face with
// shading, eye whites, irises and red pupils with a highlight.
QImage portrait() {
    QImage img(900, 640, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient wall(0, 0, 900, 640);
    wall.setColorAt(0, QColor(0x3C, 0x52, 0x6E));
    wall.setColorAt(1, QColor(0x16, 0x1F, 0x2C));
    p.fillRect(img.rect(), wall);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x2A, 0x4F, 0x7A));
    p.drawEllipse(QPointF(450, 720), 330, 200);  // shoulders
    p.setBrush(QColor(0x4A, 0x2E, 0x1C));
    p.drawEllipse(QPointF(450, 250), 200, 220);  // hair
    QRadialGradient skin(QPointF(420, 280), 220);
    skin.setColorAt(0, QColor(0xF1, 0xC8, 0xA8));
    skin.setColorAt(1, QColor(0xC9, 0x96, 0x74));
    p.setBrush(skin);
    p.drawEllipse(QPointF(450, 310), 160, 200);  // face
    p.setBrush(QColor(0xB0, 0x50, 0x50));
    p.drawEllipse(QPointF(450, 430), 46, 16);  // mouth
    for (int cx : {385, 515}) {
        p.setBrush(QColor(0xF4, 0xF1, 0xEC));
        p.drawEllipse(QPointF(cx, 290), 34, 18);
        p.setBrush(QColor(0x5A, 0x7A, 0x4A));
        p.drawEllipse(QPointF(cx, 290), 16, 16);
        QRadialGradient red(QPointF(cx, 290), 10);
        red.setColorAt(0, QColor(0xE8, 0x30, 0x28));
        red.setColorAt(1, QColor(0x9A, 0x18, 0x1C));
        p.setBrush(red);
        p.drawEllipse(QPointF(cx, 290), 10, 10);
        p.setBrush(QColor(0xFF, 0xFF, 0xFF));
        p.drawEllipse(QPointF(cx - 3, 286), 2.5, 2.5);
    }
    p.end();
    return img;
}

}  // namespace

class RedEyeWindowTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<QTemporaryDir> dir_;
    std::string home_;
    test::ScriptedPrompter* prompter_ = nullptr;
    RedEyeWindow* window_ = nullptr;

    std::string path(const std::string& name) const { return home_ + name; }
    QWidget* canvas() const { return window_->resultView()->widget(); }
    Rgb shown(int x, int y) const {
        const QRgb c = window_->resultView()->image().pixel(x, y);
        return {qRed(c), qGreen(c), qBlue(c)};
    }
    Rgb inFile(const std::string& name, int x, int y) const {
        const PictureFile f = LoadPictureFile(path(name));
        return f.picture ? pixelAt(*f.picture.Handle(), x, y) : Rgb{-1, -1, -1};
    }
    template <class T>
    T* child(const char* name) const {
        T* found = window_->findChild<T*>(name);
        if (!found) qFatal("no child %s", name);
        return found;
    }
    void open(const std::string& file, Language language = Language::English) {
        window_ = new RedEyeWindow(path(file), *prompter_, language);
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_));
    }
    static bool same(const Rgb& a, const Rgb& b) {
        if (a == b) return true;
        qWarning("expected (%d,%d,%d) but got (%d,%d,%d)", b.r, b.g, b.b, a.r, a.g, a.b);
        return false;
    }

  private slots:
    void init() {
        dir_ = std::make_unique<QTemporaryDir>();
        QVERIFY(dir_->isValid());
        home_ = dir_->path().toStdString() + "/";
        qputenv("BRINDLESEE_HOME", QByteArray::fromStdString(home_));
        prompter_ = new test::ScriptedPrompter;
        QVERIFY(SaveDIBFile(face(), path("face.png"), 90));
    }
    void cleanup() {
        if (window_) window_->hide();
        delete window_;
        window_ = nullptr;
        delete prompter_;
        dir_.reset();
    }

    void doubleClickOnAPupilCorrectsIt() {
        open("face.png");
        QCOMPARE(window_->resultView()->zoom(), 1.0);  // small: shown 1:1
        QTest::mouseDClick(canvas(), Qt::LeftButton, {}, QPoint(35, 40));
        QVERIFY(same(pixelAt(window_->session().picture(), 35, 40), {43, 40, 45}));
        QVERIFY(same(shown(35, 40), {43, 40, 45}));
        QVERIFY(same(shown(32, 38), {43, 40, 45}));
        QVERIFY(same(shown(60, 40), kSkin));
        QVERIFY(same(shown(85, 40), kDullPupil));
        QVERIFY(child<QPushButton>("cmdSpeichern")->isEnabled());
        // In selection mode a double click does nothing.
        window_->setMode(RedEyeWindow::Mode::Selection);
        QTest::mouseDClick(canvas(), Qt::LeftButton, {}, QPoint(85, 40));
        QVERIFY(same(shown(85, 40), kDullPupil));
    }

    void sliderChangeReRunsFromTheOriginal() {
        open("face.png");
        auto* sensitivity = child<QSlider>("HScrRottolleranz");
        QCOMPARE(sensitivity->value(), kSensitivityDefault);
        QTest::mouseDClick(canvas(), Qt::LeftButton, {}, QPoint(85, 40));
        QVERIFY(same(shown(85, 40), {65, 60, 70}));
        sensitivity->setValue(0);  // dull red is no longer red: the original shows again
        QVERIFY(same(shown(85, 40), kDullPupil));
        QCOMPARE(child<QLabel>("lblRottoleranzWert")->text(), QString("0"));
        sensitivity->setValue(kSensitivityDefault);
        QVERIFY(same(shown(85, 40), {65, 60, 70}));
        // A narrow search still covers the pupil: red pixels are free.
        child<QSlider>("HScrSuchweite")->setValue(1);
        QVERIFY(same(shown(81, 40), {65, 60, 70}));
        QVERIFY(same(shown(35, 40), kPupil));
    }

    void originalImageRestores() {
        open("face.png");
        auto* original = child<QPushButton>("cmdOriginal");
        QVERIFY(!original->isEnabled());
        QTest::mouseDClick(canvas(), Qt::LeftButton, {}, QPoint(35, 40));
        QVERIFY(original->isEnabled());
        QTest::mouseClick(original, Qt::LeftButton);
        QVERIFY(same(shown(35, 40), kPupil));
        QVERIFY(!window_->session().modified());
        // The before/after view shows the original beside the result.
        QTest::mouseDClick(canvas(), Qt::LeftButton, {}, QPoint(35, 40));
        child<QCheckBox>("chkOriginalBild")->setChecked(true);
        QVERIFY(window_->originalView()->isVisible());
        const QRgb before = window_->originalView()->image().pixel(35, 40);
        QCOMPARE(qRed(before), kPupil.r);
        QVERIFY(same(shown(35, 40), {43, 40, 45}));
    }

    void saveAndSaveAsWriteAndAFailureKeepsTheWork() {
        open("face.png");
        QTest::mouseDClick(canvas(), Qt::LeftButton, {}, QPoint(35, 40));
        QTest::mouseClick(child<QPushButton>("cmdSpeichern"), Qt::LeftButton);
        QVERIFY(same(inFile("face.png", 35, 40), {43, 40, 45}));
        QVERIFY(!window_->session().modified());
        QVERIFY(prompter_->asked.empty());

        // Save as onto a folder: a message, the picture and the file untouched.
        QTest::mouseDClick(canvas(), Qt::LeftButton, {}, QPoint(85, 40));
        QVERIFY(QDir().mkpath(QString::fromStdString(path("taken.png"))));
        prompter_->files.push_back(path("taken.png"));
        QTest::mouseClick(child<QPushButton>("cmdSPeicher6nUnter"), Qt::LeftButton);
        QCOMPARE(prompter_->asked.size(), std::size_t(2));
        QCOMPARE(prompter_->asked[0], "save|2|" + home_ + "|" + path("face.png"));
        QCOMPARE(prompter_->asked[1], "message|Brindlesee|48|The picture could not be saved:\r\n" + path("taken.png"));
        QVERIFY(window_->session().modified());
        QVERIFY(same(shown(85, 40), {65, 60, 70}));
        QVERIFY(same(inFile("face.png", 85, 40), kDullPupil));

        prompter_->files.push_back(path("copy.jpg"));
        QTest::mouseClick(child<QPushButton>("cmdSPeicher6nUnter"), Qt::LeftButton);
        QCOMPARE(window_->picturePath(), path("copy.jpg"));
        const Rgb c = inFile("copy.jpg", 85, 40);  // JPEG: near the value
        QVERIFY2(std::abs(c.r - 65) < 12 && std::abs(c.g - 60) < 12, "copy.jpg holds the correction");
        QVERIFY(same(inFile("face.png", 85, 40), kDullPupil));
        QCOMPARE(child<QLabel>("lblDatei")->text(), QString("copy.jpg"));
    }

    void languageSwitchChangesCaptions() {
        open("face.png", Language::German);
        QCOMPARE(window_->windowTitle(), QString("Brindlesee Rote Augen"));
        QCOMPARE(child<QPushButton>("cmdKlickmethode")->text(), QString("1.Klick"));
        QCOMPARE(child<QPushButton>("cmdSpeichern")->text(), QString("Speichern"));
        window_->setLanguage(Language::English);
        QCOMPARE(window_->windowTitle(), QString("Brindlesee Red Eye"));
        const std::pair<const char*, const char*> captions[] = {
            {"cmdKlickmethode", "1.Click"},         {"cmdAuswahlmethode", "2.Selection"},
            {"cmdOriginal", "Original image"},      {"cmdSpeichern", "Save"},
            {"cmdSPeicher6nUnter", "Save as ..."},  {"cmdAbbrechen", "Cancel"},
            {"Command35", "Scroll Center"},         {"Command8", "Run"},
            {"Command4", "Choose an eye ..."},      {"lblhred", "     RED sensitivity"},
        };
        for (const auto& [name, text] : captions) QCOMPARE(child<QPushButton>(name)->text(), QString(text));
        QCOMPARE(child<QLabel>("lblRottoleranz")->text(), QString("     RED Sensitivity"));
        QCOMPARE(child<QLabel>("lblSuchweite")->text(), QString("Searchwidth"));
        QCOMPARE(child<QLabel>("lblKlickHinweis")->text(), QString("In each eye once doubleclick.      Then adjust."));
        QCOMPARE(child<QLabel>("lblAuswahlHinweis")->text(), QString("Choose Eye, right mouse lasso draw, positioning."));
        QCOMPARE(child<QCheckBox>("chkOriginalBild")->text(), QString("Original Image"));
        window_->setLanguage(Language::German);
        QCOMPARE(child<QPushButton>("cmdAbbrechen")->text(), QString("Abbrechen"));
        QCOMPARE(child<QLabel>("lblSuchweite")->text(), QString("Suchweite"));
    }

    void selectionRunTurnsTheFramedPupilGrey() {
        open("face.png");
        QTest::mouseClick(child<QPushButton>("cmdAuswahlmethode"), Qt::LeftButton);
        QCOMPARE(window_->mode(), RedEyeWindow::Mode::Selection);
        auto* run = child<QPushButton>("Command8");
        QVERIFY(!run->isEnabled());
        // A click on a threshold's caption puts its default back.
        child<QSpinBox>("hred")->setValue(200);
        QTest::mouseClick(child<QPushButton>("lblhred"), Qt::LeftButton);
        QCOMPARE(child<QSpinBox>("hred")->value(), 60);
        child<QCheckBox>("Check2")->setChecked(true);
        QTest::mousePress(canvas(), Qt::RightButton, {}, QPoint(28, 33));
        QTest::mouseRelease(canvas(), Qt::RightButton, {}, QPoint(42, 47));
        QCOMPARE(window_->resultView()->mark(), QRect(QPoint(28, 33), QPoint(42, 47)));
        QVERIFY(run->isEnabled());
        QTest::mouseClick(run, Qt::LeftButton);
        QVERIFY(same(shown(35, 40), {92, 92, 92}));  // (190 + 40 + 45) / 3 = 91.67
        QVERIFY(same(shown(85, 40), kDullPupil));
        QVERIFY(same(shown(30, 34), kSkin));  // skin: green 172 is not below 160
    }

    void aPictureThatDoesNotLoadGivesAMessageAndAnEmptyView() {
        open("missing.jpg");
        QCOMPARE(prompter_->asked.size(), std::size_t(1));
        QCOMPARE(prompter_->asked[0], "message|Brindlesee|48|The picture cannot be loaded:\r\n" + path("missing.jpg"));
        QVERIFY(window_->resultView()->image().isNull());
        QVERIFY(!child<QPushButton>("cmdSpeichern")->isEnabled());
        QVERIFY(!child<QPushButton>("cmdSPeicher6nUnter")->isEnabled());
        QVERIFY(child<QPushButton>("cmdAbbrechen")->isEnabled());
    }

    void closingWithChangesAsks() {
        open("face.png");
        QTest::mouseDClick(canvas(), Qt::LeftButton, {}, QPoint(35, 40));
        prompter_->answers = {kCancel};
        QVERIFY(!window_->close());
        QVERIFY(window_->isVisible());
        QCOMPARE(prompter_->asked.back(), "message|Brindlesee Red Eye|35|The changes to the picture are not saved yet:\r\n" +
                                              path("face.png") + "\r\n\r\nSave them now?");
        prompter_->answers = {kYes};
        QVERIFY(window_->close());
        QVERIFY(same(inFile("face.png", 35, 40), {43, 40, 45}));
        // Unchanged: no question.
        delete window_;
        prompter_->asked.clear();
        open("face.png");
        QTest::mouseClick(child<QPushButton>("cmdAbbrechen"), Qt::LeftButton);
        QVERIFY(!window_->isVisible());
        QVERIFY(prompter_->asked.empty());
    }

    void screenshots() {
        const QByteArray out = qgetenv("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS not set");
        QVERIFY(portrait().save(QString::fromStdString(path("portrait.png"))));
        open("portrait.png", Language::German);
        window_->resize(1280, 800);
        for (Language lang : {Language::German, Language::English}) {
            const QString suffix = lang == Language::German ? "de" : "en";
            window_->setLanguage(lang);
            window_->setMode(RedEyeWindow::Mode::Click);
            child<QPushButton>("cmdOriginal")->click();
            window_->searchAt(QPoint(385, 290));
            window_->searchAt(QPoint(515, 290));
            QTest::qWait(200);
            window_->grab().save(QString("%1/red-eye-click-%2.png").arg(QString(out), suffix));
            child<QCheckBox>("chkOriginalBild")->setChecked(true);
            child<QPushButton>("cmdZoom1")->click();
            window_->resultView()->scrollToCentre();
            QTest::qWait(200);
            window_->grab().save(QString("%1/red-eye-compare-%2.png").arg(QString(out), suffix));
            child<QCheckBox>("chkOriginalBild")->setChecked(false);
            child<QPushButton>("cmdEinpassen")->click();
            child<QPushButton>("cmdOriginal")->click();
            window_->resultView()->setMark(QRect(360, 265, 50, 50));
            window_->setMode(RedEyeWindow::Mode::Selection);
            QTest::qWait(200);
            window_->grab().save(QString("%1/red-eye-selection-%2.png").arg(QString(out), suffix));
        }
        window_->hide();
    }
};

QTEST_MAIN(RedEyeWindowTest)
#include "red_eye_window_test.moc"
