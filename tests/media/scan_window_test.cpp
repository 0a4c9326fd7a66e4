// The scanner dialog on SANE's own "test" backend, enabled in a
// configuration folder inside the test's home: it lists the sources, scans
// a picture of the expected size into the file, stops a scan on Cancel and
// says so when there is no scanner. `screenshots` saves the dialog in
// German and English (run by hand under Xvfb, not by CTest).
#include <QComboBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <memory>

#include <unistd.h>

#include "image/picture_io.h"
#include "media/scan_window.h"
#include "support/scripted_prompter.h"

using namespace brindle;
using brindle::media::ScanDialog;

namespace {

// SANE reads SANE_CONFIG_DIR once per process, so the variable names one
// link for the whole process and each test points it at its own home.
std::filesystem::path configLink() {
    static const std::filesystem::path link = [] {
        const auto p = std::filesystem::temp_directory_path() /
                       ("brindlesee-sane-gui-" + std::to_string(static_cast<long>(getpid())));
        qputenv("SANE_CONFIG_DIR", QByteArray::fromStdString(p.string()));
        return p;
    }();
    return link;
}

void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

template <class T>
T* child(QWidget& w, const QString& name) {
    T* found = w.findChild<T*>(name);
    if (!found) qFatal("no child %s", qPrintable(name));
    return found;
}

}  // namespace

class ScanWindowTest : public QObject {
    Q_OBJECT

  private:
    QTemporaryDir* dir_ = nullptr;
    std::string home_;
    test::ScriptedPrompter* prompter_ = nullptr;

    // Enables the backends in `dll` with the test backend set up by `testConf`.
    void configure(const std::string& dll, const std::string& testConf) {
        std::filesystem::create_directories(home_ + "sane");
        writeFile(home_ + "sane/dll.conf", dll);
        writeFile(home_ + "sane/test.conf", testConf);
        std::filesystem::remove(configLink());
        std::filesystem::create_directory_symlink(home_ + "sane", configLink());
    }

    // A shown dialog whose source search has ended.
    std::unique_ptr<ScanDialog> openDialog(const std::string& target, Language lang) {
        auto d = std::make_unique<ScanDialog>(target, *prompter_, lang);
        d->show();
        if (!QTest::qWaitForWindowExposed(d.get())) qFatal("dialog not shown");
        if (!QTest::qWaitFor([&] { return !d->isListing(); }, 60000)) qFatal("sources not listed");
        return d;
    }

    static void chooseResolution(ScanDialog& d, int dpi) {
        auto* box = child<QComboBox>(d, "cboAuflösung");
        const int i = box->findData(dpi);
        if (i < 0) qFatal("no resolution %d", dpi);
        box->setCurrentIndex(i);
    }

  private slots:
    void init() {
        dir_ = new QTemporaryDir;
        QVERIFY(dir_->isValid());
        home_ = dir_->path().toStdString() + "/";
        qputenv("BRINDLESEE_HOME", QByteArray::fromStdString(home_));
        prompter_ = new test::ScriptedPrompter;
    }
    void cleanup() {
        std::filesystem::remove(configLink());
        delete prompter_;
        delete dir_;
    }

    void listsTheTestSources() {
        configure("test\n", "number_of_devices 2\n");
        auto d = openDialog(home_ + "scan.jpg", Language::English);
        QCOMPARE(d->sources().size(), std::size_t(2));
        auto* box = child<QComboBox>(*d, "cboQuelle");
        QCOMPARE(box->count(), 2);
        QCOMPARE(box->itemData(0).toString(), QString("test:0"));
        QCOMPARE(box->itemData(1).toString(), QString("test:1"));
        QVERIFY(box->itemText(1).endsWith("(test:1)"));
        QVERIFY(child<QPushButton>(*d, "cmdScannen")->isEnabled());
        QCOMPARE(child<QLabel>(*d, "lblStatus")->text(), QString());
        QVERIFY(prompter_->asked.empty());
    }

    void scanWritesThePictureAndAccepts() {
        // 80 x 100 mm at 100 dpi: 314 x 393 pixels.
        configure("test\n", "number_of_devices 2\nmode Color\nresolution 50\ntest-picture \"Solid black\"\n");
        const std::string target = home_ + "scanimage.jpg";
        auto d = openDialog(target, Language::German);
        child<QComboBox>(*d, "cboQuelle")->setCurrentIndex(1);
        chooseResolution(*d, 100);
        QTest::mouseClick(child<QPushButton>(*d, "cmdScannen"), Qt::LeftButton);
        QVERIFY(d->isScanning());
        QVERIFY(!child<QPushButton>(*d, "cmdScannen")->isEnabled());
        QTRY_VERIFY_WITH_TIMEOUT(!d->isScanning(), 60000);
        QCOMPARE(d->result(), int(QDialog::Accepted));
        QVERIFY(!d->isVisible());
        QCOMPARE(d->savedPath(), target);
        QCOMPARE(child<QProgressBar>(*d, "ProgressBar1")->value(), 100);
        QVERIFY(prompter_->asked.empty());
        const PictureFile file = LoadPictureFile(target);
        QVERIFY(file.picture);
        QCOMPARE(file.picture.Width(), 314);
        QCOMPARE(file.picture.Height(), 393);
    }

    void cancelStopsTheScanAndKeepsTheDialog() {
        // The backend waits 0.2 s after each of the 17 blocks of this
        // picture, so the scan is still running when Cancel comes.
        configure("test\n", "mode Gray\nresolution 300\nread-delay true\nread-delay-duration 200000\n");
        const std::string target = home_ + "cancelled.jpg";
        auto d = openDialog(target, Language::English);
        QTest::mouseClick(child<QPushButton>(*d, "cmdScannen"), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(child<QProgressBar>(*d, "ProgressBar1")->value() > 0, 60000);
        QVERIFY2(d->isScanning(), qPrintable(child<QLabel>(*d, "lblStatus")->text()));
        QTest::mouseClick(child<QPushButton>(*d, "cmdAbbrechen"), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(!d->isScanning(), 60000);
        QVERIFY(d->isVisible());
        QCOMPARE(child<QLabel>(*d, "lblStatus")->text(), QString("The scan was cancelled."));
        QCOMPARE(d->savedPath(), std::string());
        QVERIFY(!std::filesystem::exists(target));
        QVERIFY(prompter_->asked.empty());
        QVERIFY(child<QPushButton>(*d, "cmdScannen")->isEnabled());
        // Cancel now closes.
        QTest::mouseClick(child<QPushButton>(*d, "cmdAbbrechen"), Qt::LeftButton);
        QVERIFY(!d->isVisible());
        QCOMPARE(d->result(), int(QDialog::Rejected));
    }

    void noScannerGivesTheMessage() {
        configure("", "");
        auto d = openDialog(home_ + "none.jpg", Language::German);
        QVERIFY(d->sources().empty());
        QVERIFY(!child<QPushButton>(*d, "cmdScannen")->isEnabled());
        QCOMPARE(child<QLabel>(*d, "lblStatus")->text(), QString("Es wurde kein Scanner gefunden."));
        QCOMPARE(prompter_->asked.size(), std::size_t(1));
        QCOMPARE(prompter_->asked[0], std::string("message|Brindlesee|48|Es wurde kein Scanner gefunden."));
        d->setLanguage(Language::English);
        QCOMPARE(child<QLabel>(*d, "lblStatus")->text(), QString("No scanner was found."));
    }

    void languageSwitch() {
        configure("test\n", "");
        auto d = openDialog(home_ + "scan.jpg", Language::German);
        QCOMPARE(child<QPushButton>(*d, "cmdScannen")->text(), QString("Scannen"));
        QCOMPARE(child<QPushButton>(*d, "cmdAbbrechen")->text(), QString("Abbrechen"));
        QCOMPARE(child<QComboBox>(*d, "cboAuflösung")->itemText(0), QString("wie eingestellt"));
        QCOMPARE(d->windowTitle(), QString("Bild vom Scanner holen"));
        d->setLanguage(Language::English);
        QCOMPARE(child<QPushButton>(*d, "cmdScannen")->text(), QString("Scan"));
        QCOMPARE(child<QPushButton>(*d, "cmdAbbrechen")->text(), QString("Cancel"));
        QCOMPARE(child<QComboBox>(*d, "cboAuflösung")->itemText(0), QString("as set"));
        QCOMPARE(child<QComboBox>(*d, "cboAuflösung")->itemText(2), QString("100 dpi"));
        QCOMPARE(d->windowTitle(), QString("Picture from the scanner"));
    }

    // Saves the dialog in both languages into $BRINDLESEE_SCREENSHOTS (or the
    // temporary home) to be looked at.
    void screenshots() {
        configure("test\n", "number_of_devices 2\n");
        const QString out = qEnvironmentVariableIsSet("BRINDLESEE_SCREENSHOTS")
                                ? qEnvironmentVariable("BRINDLESEE_SCREENSHOTS")
                                : QString::fromStdString(home_);
        for (Language lang : {Language::German, Language::English}) {
            auto d = openDialog(home_ + "scan.jpg", lang);
            const char* name = lang == Language::German ? "/scan_dialog_de.png" : "/scan_dialog_en.png";
            QVERIFY(d->grab().save(out + name));
        }
    }
};

QTEST_MAIN(ScanWindowTest)
#include "scan_window_test.moc"
