// The explorer window offscreen: thumbnails in each view mode, sorting by
// the column heads, the pattern filter, copy / cut / paste by keys, delete
// to the trash, turning, the tools, 2,000 files, the open-dialog role and
// the start from the command line. `screenshots` saves every view mode in
// German and English to $BRINDLESEE_SCREENSHOTS (run by hand under Xvfb).
#include "explorer/bildviewer_window.h"

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSemaphore>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QTreeView>
#include <atomic>
#include <filesystem>
#include <fstream>

#include "explorer/explorer_options.h"
#include "explorer/full_view_window.h"
#include "explorer/rename_many_dialog.h"
#include "explorer/thumbnail_cache.h"
#include "image/file_stamp.h"
#include "image/jpeg_io.h"
#include "shell/explorer_start.h"
#include "shell/startup.h"
#include "support/scripted_prompter.h"

using namespace brindle;
using brindle::explorer::FrmBildviewer;
using brindle::explorer::ViewMode;
namespace fs = std::filesystem;

namespace {

void saveSolid(const QString& path, int w, int h, QColor colour) {
    QImage img(w, h, QImage::Format_RGB32);
    img.fill(colour);
    QVERIFY(img.save(path, nullptr, 95));
}

// Left half `left`, right half `right`: a turn shows where each went.
void saveHalves(const QString& path, int w, int h, QColor left, QColor right) {
    QImage img(w, h, QImage::Format_RGB32);
    QPainter p(&img);
    p.fillRect(0, 0, w / 2, h, left);
    p.fillRect(w / 2, 0, w - w / 2, h, right);
    p.end();
    QVERIFY(img.save(path, nullptr, 95));
}

// A landscape in evening light with a variation per picture, for screenshots.
void savePhoto(const QString& path, int seed) {
    QImage img(800, 533, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, 330);
    sky.setColorAt(0, QColor::fromHsv((210 + seed * 23) % 360, 150, 150));
    sky.setColorAt(1, QColor::fromHsv((30 + seed * 11) % 360, 120, 245));
    p.fillRect(img.rect(), sky);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(255, 236, 170));
    p.drawEllipse(QPointF(150 + seed * 83 % 500, 170 + seed * 17 % 90), 42, 42);
    p.setBrush(QColor::fromHsv((260 + seed * 7) % 360, 80, 90));
    p.drawPolygon(QPolygonF({QPointF(0, 330), QPointF(160, 180 + seed * 13 % 60), QPointF(330, 290),
                             QPointF(480, 160 + seed * 29 % 70), QPointF(800, 300),
                             QPointF(800, 340), QPointF(0, 340)}));
    QLinearGradient ground(0, 330, 0, 533);
    ground.setColorAt(0, QColor::fromHsv((90 + seed * 19) % 360, 120, 150));
    ground.setColorAt(1, QColor::fromHsv((110 + seed * 19) % 360, 140, 60));
    p.fillRect(QRect(0, 335, 800, 198), ground);
    p.setBrush(QColor(60, 40, 28));
    p.drawRect(QRectF(600 - seed * 37 % 400, 330, 14, 110));
    p.setBrush(QColor::fromHsv((100 + seed * 5) % 360, 150, 90));
    p.drawEllipse(QPointF(607 - seed * 37 % 400, 310), 55, 70);
    p.end();
    QVERIFY(img.save(path, "JPG", 90));
}

std::string readAll(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

QStringList names(const FrmBildviewer& w) {
    QStringList list;
    for (const auto& r : w.rows()) list << QString::fromStdString(r.name);
    return list;
}

QAbstractItemModel* model(FrmBildviewer& w) {
    return w.findChild<QListView*>("ListView1")->model();
}

int rowOf(FrmBildviewer& w, const QString& name) {
    for (int r = 0; r < int(w.rows().size()); ++r)
        if (QString::fromStdString(w.rows()[r].name) == name) return r;
    return -1;
}

QString cell(FrmBildviewer& w, const QString& name, int column) {
    return model(w)->index(rowOf(w, name), column).data().toString();
}

void select(FrmBildviewer& w, const QStringList& files) {
    QItemSelectionModel* sel = w.findChild<QListView*>("ListView1")->selectionModel();
    sel->clearSelection();
    for (const QString& f : files) {
        const int r = rowOf(w, f);
        QVERIFY2(r >= 0, qPrintable(f));
        sel->select(model(w)->index(r, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
        sel->setCurrentIndex(model(w)->index(r, 0), QItemSelectionModel::NoUpdate);
    }
}

// The colour at a point of a row's icon, in tenths of its width and height.
QColor iconColour(FrmBildviewer& w, const QString& name, int x = 5, int y = 5) {
    const QIcon icon = model(w)->index(rowOf(w, name), 0).data(Qt::DecorationRole).value<QIcon>();
    const QImage img = icon.pixmap(QSize(96, 96)).toImage();
    return img.pixelColor(img.width() * x / 10, img.height() * y / 10);
}

bool near(QColor a, QColor b, int tolerance = 12) {
    return std::abs(a.red() - b.red()) <= tolerance &&
           std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}

// Records whether the GUI thread ever made a thumbnail or read a preview.
struct ThreadWatch {
    std::atomic<int> calls{0};
    std::atomic<int> onGuiThread{0};
    std::function<void()> hook() {
        QThread* gui = QThread::currentThread();
        return [this, gui] {
            ++calls;
            if (QThread::currentThread() == gui) ++onGuiThread;
        };
    }
};

}  // namespace

class BildviewerWindowTest : public QObject {
    Q_OBJECT
  private:
    QTemporaryDir home_;
    QTemporaryDir pictures_;
    std::string prog_;

    std::string folder() const { return pictures_.path().toStdString(); }
    QString pic(const char* name) const { return pictures_.filePath(name); }

  private slots:
    void init() {
        home_.~QTemporaryDir();
        new (&home_) QTemporaryDir();
        pictures_.~QTemporaryDir();
        new (&pictures_) QTemporaryDir();
        QVERIFY(home_.isValid() && pictures_.isValid());
        qputenv("BRINDLESEE_HOME", home_.path().toUtf8());
        prog_ = home_.path().toStdString() + "/";
    }

    void thumbnailsInEveryViewMode() {
        saveSolid(pic("rot.jpg"), 200, 100, QColor(220, 30, 30));
        saveSolid(pic("blau.png"), 60, 120, QColor(30, 40, 220));
        std::ofstream(pic("kaputt.jpg").toStdString()) << "no picture here";
        std::ofstream(pic("lied.wav").toStdString()) << "RIFF";
        test::ScriptedPrompter prompter;
        ThreadWatch watch;
        FrmBildviewer w(prog_, {}, prompter, Language::German);
        w.setThumbnailHook(watch.hook());
        w.show();
        w.showFolder(folder());
        // Pictures only under the first filter.
        QCOMPARE(names(w), QStringList({"blau.png", "kaputt.jpg", "rot.jpg"}));
        QTRY_COMPARE_WITH_TIMEOUT(w.thumbnailsShown(), 3, 20000);
        QVERIFY(near(iconColour(w, "rot.jpg"), QColor(220, 30, 30)));
        QVERIFY(near(iconColour(w, "blau.png"), QColor(30, 40, 220)));
        // The broken picture has the error picture: a light grey card.
        QVERIFY(near(iconColour(w, "kaputt.jpg", 1, 5), QColor(224, 224, 224)));
        QCOMPARE(cell(w, "rot.jpg", explorer::kColWidth), QString("200"));
        QCOMPARE(cell(w, "rot.jpg", explorer::kColHeight), QString("100"));
        QCOMPARE(cell(w, "blau.png", explorer::kColWidth), QString("60"));
        QCOMPARE(cell(w, "blau.png", explorer::kColHeight), QString("120"));
        QCOMPARE(cell(w, "kaputt.jpg", explorer::kColWidth), QString());
        QVERIFY(fs::exists(explorer::thumbnailPath(prog_, pic("rot.jpg").toStdString())));

        auto* stack = w.findChild<QStackedWidget*>("listStack");
        auto* list = w.findChild<QListView*>("ListView1");
        auto* details = w.findChild<QTreeView*>("ListView1Details");
        auto* big = w.findChild<QLabel*>("picBild");
        const std::pair<const char*, ViewMode> modes[] = {
            {"mnuDetails", ViewMode::Details},
            {"mnuListe", ViewMode::List},
            {"mnuKleineSymbole", ViewMode::SmallIcons},
            {"mnuGrosseSymbole", ViewMode::LargeIcons},
            {"mnuBildansicht", ViewMode::Picture}};
        for (const auto& [action, mode] : modes) {
            QAction* a = w.findChild<QAction*>(action);
            QVERIFY(a);
            a->trigger();
            QCOMPARE(w.viewMode(), mode);
            QCOMPARE(stack->currentWidget(),
                     mode == ViewMode::Details ? static_cast<QWidget*>(details) : list);
            QCOMPARE(big->isVisible(), mode == ViewMode::Picture);
        }
        QCOMPARE(list->iconSize().width(), 80);
        // The picture view shows the selected picture large, read off the GUI thread.
        select(w, {"rot.jpg"});
        QTRY_VERIFY_WITH_TIMEOUT(!w.previewPicture().isNull(), 20000);
        QCOMPARE(w.previewPicture().size(), QSize(200, 100));  // never larger than the picture
        QVERIFY(near(w.previewPicture().pixelColor(100, 50), QColor(220, 30, 30)));
        QVERIFY(w.findChild<QPlainTextEdit*>("TxtFileinfo")
                    ->toPlainText()
                    .startsWith("Dateiinformationen:\nName: rot.jpg"));

        QVERIFY(watch.calls >= 4);
        QCOMPARE(watch.onGuiThread.load(), 0);
        // The settings go to option.loo on closing.
        w.close();
        const explorer::ExplorerOptions saved = explorer::loadExplorerOptions(prog_);
        QCOMPARE(saved.view, ViewMode::Picture);
        QCOMPARE(saved.folder, folder());
    }

    void zoomMakesThumbnailsOfTheNewSize() {
        saveSolid(pic("rot.jpg"), 200, 100, QColor(220, 30, 30));
        test::ScriptedPrompter prompter;
        FrmBildviewer w(prog_, folder(), prompter, Language::German);
        w.show();
        QTRY_COMPARE_WITH_TIMEOUT(w.thumbnailsShown(), 1, 20000);
        auto iconWidth = [&] {
            const QIcon icon = model(w)->index(0, 0).data(Qt::DecorationRole).value<QIcon>();
            return icon.availableSizes().isEmpty() ? 0 : icon.availableSizes().front().width();
        };
        QCOMPARE(iconWidth(), w.thumbnailSize());
        prompter.inputs = {"64"};
        w.findChild<QAction*>("zoom")->trigger();
        QCOMPARE(prompter.asked.back(),
                 "input|Zoom|Größe Thumbnails:|" +
                     std::to_string(explorer::ExplorerOptions{}.thumbnailSize));
        QCOMPARE(w.thumbnailSize(), 64);
        QTRY_COMPARE_WITH_TIMEOUT(w.thumbnailsShown(), 1, 20000);
        QCOMPARE(iconWidth(), 64);
        cDIBSection pixels;
        int sw = 0, sh = 0;
        QVERIFY(explorer::decodeThumbnailFile(
            readAll(explorer::thumbnailPath(prog_, pic("rot.jpg").toStdString())), pixels, sw, sh));
        QCOMPARE(pixels.Width(), 64);
        QCOMPARE(sw, 200);
        // Out of range: nothing changes.
        prompter.inputs = {"5000"};
        w.findChild<QAction*>("zoom")->trigger();
        QCOMPARE(w.thumbnailSize(), 64);
    }

    void columnHeadsSortAndTranslate() {
        std::ofstream(pic("a.jpg").toStdString()) << std::string(300, 'a');
        std::ofstream(pic("b.jpg").toStdString()) << std::string(100, 'b');
        std::ofstream(pic("c.jpg").toStdString()) << std::string(200, 'c');
        const auto now = fs::file_time_type::clock::now();
        fs::last_write_time(pic("a.jpg").toStdString(), now - std::chrono::hours(1));
        fs::last_write_time(pic("b.jpg").toStdString(), now - std::chrono::hours(3));
        fs::last_write_time(pic("c.jpg").toStdString(), now - std::chrono::hours(2));
        test::ScriptedPrompter prompter;
        FrmBildviewer w(prog_, folder(), prompter, Language::German);
        w.findChild<QAction*>("mnuDetails")->trigger();
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QStringList heads;
        for (int c = 0; c < explorer::kColumnCount; ++c)
            heads << model(w)->headerData(c, Qt::Horizontal).toString();
        QCOMPARE(heads, QStringList({"Dateiname", "Größe", "Typ", "Geändert am", "Attribute",
                                     "Breite", "Höhe", "Pixel"}));
        QCOMPARE(names(w), QStringList({"a.jpg", "b.jpg", "c.jpg"}));

        QHeaderView* header = w.findChild<QTreeView*>("ListView1Details")->header();
        auto clickHead = [&](int column) {
            QTest::mouseClick(
                header->viewport(), Qt::LeftButton, {},
                QPoint(header->sectionViewportPosition(column) + 5, header->height() / 2));
        };
        clickHead(explorer::kColSize);
        QCOMPARE(names(w), QStringList({"b.jpg", "c.jpg", "a.jpg"}));
        clickHead(explorer::kColSize);
        QCOMPARE(names(w), QStringList({"a.jpg", "c.jpg", "b.jpg"}));
        clickHead(explorer::kColTime);
        QCOMPARE(names(w), QStringList({"b.jpg", "c.jpg", "a.jpg"}));
        // The menu's sort keys do the same.
        w.findChild<QAction*>("Sortname")->trigger();
        QCOMPARE(names(w), QStringList({"a.jpg", "b.jpg", "c.jpg"}));

        select(w, {"c.jpg"});
        w.setLanguage(Language::English);
        QCOMPARE(w.selectedFiles(), std::vector<std::string>{pic("c.jpg").toStdString()});
        heads.clear();
        for (int c = 0; c < explorer::kColumnCount; ++c)
            heads << model(w)->headerData(c, Qt::Horizontal).toString();
        QCOMPARE(heads, QStringList({"Filename", "Size", "Type", "Change at", "Attribute", "Width",
                                     "Height", "Pixel"}));
        QCOMPARE(w.findChild<QAction*>("zoom")->toolTip(), QString("Size Thumbs"));
        QCOMPARE(w.findChild<QAction*>("pfadrunter")->toolTip(), QString("Folder Down"));
        QCOMPARE(w.findChild<QAction*>("drehl")->toolTip(), QString::fromUtf8("turn left 90°"));
        QCOMPARE(w.findChild<QAction*>("zeichnen")->toolTip(), QString("Foto Working"));
        QCOMPARE(w.findChild<QAction*>("twain")->toolTip(), QString("Import Cam / Scan"));
        QCOMPARE(w.findChild<QAction*>("vollbild")->toolTip(), QString("fullscreen"));
        w.setLanguage(Language::German);
        QCOMPARE(w.findChild<QAction*>("mnuGrosseSymbole")->text(),
                 QString::fromUtf8("große Symbole"));
        QCOMPARE(w.findChild<QAction*>("mnuBildansicht")->text(), QString("Bildansicht"));
    }

    void patternFilterAndMediaPreview() {
        saveSolid(pic("a.jpg"), 20, 20, Qt::green);
        saveSolid(pic("b.png"), 20, 20, Qt::green);
        std::ofstream(pic("c.wav").toStdString()) << "not really a sound";
        std::ofstream(pic("d.txt").toStdString()) << "text";
        test::ScriptedPrompter prompter;
        FrmBildviewer w(prog_, folder(), prompter, Language::German);
        w.show();
        auto* box = w.findChild<QComboBox*>("cmbPattern");
        QCOMPARE(box->itemText(0), QString::fromUtf8("Alle unterstützten Bilddateien"));
        QCOMPARE(box->itemText(1), QString::fromUtf8("Alle unterstützten Mediadateien"));
        QCOMPARE(box->itemText(2), QString::fromUtf8("Alle unterstützten Dateien"));
        QCOMPARE(box->itemText(box->count() - 1), QString("*.*"));
        QVERIFY(box->findText("*.jpg;*.jpeg   Joint Photographic Experts Group") > 0);
        QCOMPARE(names(w), QStringList({"a.jpg", "b.png"}));
        box->setCurrentIndex(1);
        emit box->activated(1);
        QCOMPARE(names(w), QStringList({"c.wav"}));
        box->setCurrentIndex(2);
        emit box->activated(2);
        QCOMPARE(names(w), QStringList({"a.jpg", "b.png", "c.wav"}));
        const int all = box->count() - 1;
        box->setCurrentIndex(all);
        emit box->activated(all);
        QCOMPARE(names(w), QStringList({"a.jpg", "b.png", "c.wav", "d.txt"}));

        // A media file shows play and stop; a file that will not play gives a
        // text and nothing waits for it.
        select(w, {"c.wav"});
        auto* media = w.findChild<QWidget*>("picMedia");
        QVERIFY(media->isVisible());
        w.findChild<QPushButton*>("cmdPlay")->click();
        QTRY_VERIFY_WITH_TIMEOUT(!w.findChild<QLabel*>("lblMedia")->text().isEmpty(), 5000);
        w.findChild<QPushButton*>("cmdStop")->click();
        select(w, {"a.jpg"});
        QVERIFY(!media->isVisible());
    }

    void copyCutAndPasteByKeys() {
        saveSolid(pic("a.jpg"), 30, 20, Qt::yellow);
        QVERIFY(QDir(pictures_.path()).mkdir("unter"));
        const std::string original = readAll(pic("a.jpg").toStdString());
        test::ScriptedPrompter prompter;
        FrmBildviewer w(prog_, folder(), prompter, Language::German);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        auto* list = w.findChild<QListView*>("ListView1");
        select(w, {"a.jpg"});
        QTest::keyClick(list, Qt::Key_C);
        QTest::keyClick(list, Qt::Key_V);
        QCOMPARE(readAll(pic("Kopie von a.jpg").toStdString()), original);
        QTest::keyClick(list, Qt::Key_V);
        QCOMPARE(readAll(pic("Kopie1 von a.jpg").toStdString()), original);
        QCOMPARE(names(w), QStringList({"a.jpg", "Kopie von a.jpg", "Kopie1 von a.jpg"}));
        QCOMPARE(w.statusBar()->currentMessage(), QString("Fertig Kopieren"));

        // Cut, then paste in another folder: the file moves.
        select(w, {"Kopie1 von a.jpg"});
        QTest::keyClick(list, Qt::Key_X);
        w.showFolder(pictures_.filePath("unter").toStdString());
        QTest::keyClick(list, Qt::Key_V);
        QCOMPARE(readAll(pictures_.filePath("unter/Kopie1 von a.jpg").toStdString()), original);
        QVERIFY(!fs::exists(pic("Kopie1 von a.jpg").toStdString()));
        // Back to where it came from, through the history.
        w.MenüGeklickt("zurück");
        QCOMPARE(w.folder(), folder());
        w.MenüGeklickt("weiter");
        QCOMPARE(w.folder(), pictures_.filePath("unter").toStdString());
        w.MenüGeklickt("pfadrunter");
        QCOMPARE(w.folder(), folder());
    }

    void renameOneAndMany() {
        saveSolid(pic("Urlaub_1.jpg"), 20, 20, Qt::red);
        saveSolid(pic("Urlaub_2.jpg"), 20, 20, Qt::red);
        saveSolid(pic("a.jpg"), 20, 20, Qt::red);
        test::ScriptedPrompter prompter;
        FrmBildviewer w(prog_, folder(), prompter, Language::German);
        w.show();
        select(w, {"a.jpg"});
        prompter.inputs = {"b.jpg"};
        w.MenüGeklickt("Umbenennen");
        QCOMPARE(prompter.asked.back(), std::string("input|Umbenennen|Neuer Name:|a.jpg"));
        QCOMPARE(names(w), QStringList({"b.jpg", "Urlaub_1.jpg", "Urlaub_2.jpg"}));
        QCOMPARE(w.selectedFiles(), std::vector<std::string>{pic("b.jpg").toStdString()});

        select(w, {"Urlaub_1.jpg", "Urlaub_2.jpg"});
        QTimer::singleShot(0, this, [] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            QVERIFY(dialog && dialog->objectName() == "frmUmbenennenMulti");
            dialog->findChild<QComboBox*>("cmbSuchenNach")->setEditText("urlaub");
            dialog->findChild<QComboBox*>("cmbErsetztenDurch")->setEditText("Ferien");
            QVERIFY(!dialog->findChild<QCheckBox*>("chkGroßKlein")->isChecked());
            dialog->accept();
        });
        w.MenüGeklickt("Umbenennen");
        QCOMPARE(names(w), QStringList({"b.jpg", "Ferien_1.jpg", "Ferien_2.jpg"}));
    }

    void deleteAsksAndMovesToTheTrash() {
        QTemporaryDir xdg;
        qputenv("XDG_DATA_HOME", xdg.path().toUtf8());
        saveSolid(pic("weg.jpg"), 30, 20, Qt::cyan);
        saveSolid(pic("bleibt.jpg"), 30, 20, Qt::cyan);
        test::ScriptedPrompter prompter;
        FrmBildviewer w(prog_, folder(), prompter, Language::German);
        w.show();
        QTRY_COMPARE_WITH_TIMEOUT(w.thumbnailsShown(), 2, 20000);
        const std::string thumb = explorer::thumbnailPath(prog_, pic("weg.jpg").toStdString());
        QVERIFY(fs::exists(thumb));
        auto* list = w.findChild<QListView*>("ListView1");

        prompter.answers = {kNo};
        select(w, {"weg.jpg"});
        QTest::keyClick(list, Qt::Key_Delete);
        QVERIFY(fs::exists(pic("weg.jpg").toStdString()));

        prompter.answers = {kYes};
        QTest::keyClick(list, Qt::Key_Delete);
        QCOMPARE(prompter.asked.size(), std::size_t(2));
        QVERIFY(QString::fromStdString(prompter.asked[1])
                    .startsWith(QString::fromUtf8("message|Brindlesee|36|Wollen Sie alle "
                                                  "ausgewählten Bilder (Dateien) löschen?\r")));
        QVERIFY(!fs::exists(pic("weg.jpg").toStdString()));
        QVERIFY(fs::exists(xdg.filePath("Trash/files/weg.jpg").toStdString()));
        QVERIFY(!fs::exists(thumb));
        QCOMPARE(names(w), QStringList({"bleibt.jpg"}));
        qunsetenv("XDG_DATA_HOME");
    }

    void turnKeepsTheTimeAndRemakesTheThumbnail() {
        saveHalves(pic("quer.jpg"), 64, 32, QColor(230, 20, 20), QColor(20, 20, 230));
        const FileStamp before = readFileStamp(pic("quer.jpg").toStdString());
        test::ScriptedPrompter prompter;
        FrmBildviewer w(prog_, folder(), prompter, Language::German);
        w.show();
        QTRY_COMPARE_WITH_TIMEOUT(w.thumbnailsShown(), 1, 20000);
        QCOMPARE(cell(w, "quer.jpg", explorer::kColWidth), QString("64"));
        select(w, {"quer.jpg"});
        w.findChild<QAction*>("drehr")->trigger();
        QCOMPARE(prompter.asked.back(),
                 std::string("message|Brindlesee|36|Wollen Sie alle ausgewählten Bilder um 90 Grad "
                             "nach rechts drehen?"));
        int width = 0, height = 0;
        QVERIFY(readJpegSize(readAll(pic("quer.jpg").toStdString()), width, height));
        QCOMPARE(width, 32);
        QCOMPARE(height, 64);
        const FileStamp after = readFileStamp(pic("quer.jpg").toStdString());
        QCOMPARE(after.modified.tv_sec, before.modified.tv_sec);
        QCOMPARE(after.modified.tv_nsec, before.modified.tv_nsec);
        // A new thumbnail, upright as turned: red on top now.
        QTRY_COMPARE_WITH_TIMEOUT(cell(w, "quer.jpg", explorer::kColWidth), QString("32"), 20000);
        QCOMPARE(cell(w, "quer.jpg", explorer::kColHeight), QString("64"));
        QCOMPARE(w.selectedFiles(), std::vector<std::string>{pic("quer.jpg").toStdString()});
    }

    void scanSavesWhereAskedAndSelectsThePicture() {
        saveSolid(pic("a.jpg"), 20, 20, Qt::red);
        struct TitlePrompter : test::ScriptedPrompter {
            std::vector<FileDialog> dialogs;
            std::string saveFile(const FileDialog& d) override {
                dialogs.push_back(d);
                return ScriptedPrompter::saveFile(d);
            }
        } prompter;
        FrmBildviewer w(prog_, folder(), prompter, Language::German);
        std::vector<std::string> scanned;
        std::string answer;
        w.setScanner([&](const std::string& target) {
            scanned.push_back(target);
            if (!answer.empty()) saveSolid(QString::fromStdString(answer), 30, 40, Qt::blue);
            return answer;
        });
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QAction* twain = w.findChild<QAction*>("twain");
        QVERIFY(twain->isEnabled());

        // Breaking off the file dialog scans nothing.
        twain->trigger();
        QVERIFY(scanned.empty());
        QCOMPARE(prompter.dialogs.size(), std::size_t(1));
        QCOMPARE(prompter.dialogs[0].title, std::string("Wähle Datei zum Speichern des importierten Bildes"));
        QCOMPARE(prompter.dialogs[0].startDirectory, folder() + "/");
        QCOMPARE(prompter.dialogs[0].proposedName, std::string("scanimage.jpg"));

        // A scan that saved nothing leaves the list as it was.
        const std::string target = pic("scanimage.jpg").toStdString();
        prompter.files.push_back(target);
        twain->trigger();
        QCOMPARE(scanned, std::vector<std::string>{target});
        QCOMPARE(w.rows().size(), std::size_t(1));

        // A saved scan appears in the list, selected.
        prompter.files.push_back(target);
        answer = target;
        twain->trigger();
        QCOMPARE(scanned.size(), std::size_t(2));
        QCOMPARE(w.rows().size(), std::size_t(2));
        QCOMPARE(w.selectedFiles(), std::vector<std::string>{target});

        w.setLanguage(Language::English);
        twain->trigger();
        QCOMPARE(prompter.dialogs.back().title, std::string("Choose the file to save the imported picture in"));
    }

    void toolEntriesHandTheSelectionOn() {
        saveSolid(pic("a.jpg"), 20, 20, Qt::red);
        saveSolid(pic("b.jpg"), 20, 20, Qt::red);
        std::ofstream(pic("c.wav").toStdString()) << "x";
        test::ScriptedPrompter prompter;
        FrmBildviewer w(prog_, folder(), prompter, Language::German);
        std::vector<std::pair<std::string, std::vector<std::string>>> opened;
        w.setToolOpener([&](const std::string& tool, std::vector<std::string> files) {
            opened.emplace_back(tool, files);
        });
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        // Nothing selected: a hint and no tool.
        w.findChild<QAction*>("redeye")->trigger();
        QVERIFY(opened.empty());
        QCOMPARE(prompter.asked.size(), std::size_t(1));

        const std::vector<std::string> both{pic("a.jpg").toStdString(), pic("b.jpg").toStdString()};
        select(w, {"a.jpg", "b.jpg"});
        w.findChild<QAction*>("zeichnen")->trigger();
        w.findChild<QAction*>("panorama")->trigger();
        w.findChild<QAction*>("print")->trigger();
        QVERIFY(!w.findChild<QAction*>("twain")->isEnabled());

        // The pop-up menu: its entries, AVI enabled, "Teilen" opens the split tool.
        QStringList entries;
        bool printEnabled = false, aviEnabled = false;
        QTimer::singleShot(0, this, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu);
            for (QAction* a : menu->actions())
                if (!a->isSeparator()) entries << a->objectName();
            printEnabled = menu->findChild<QAction*>("Drucken")->isEnabled();
            aviEnabled = menu->findChild<QAction*>("MakeAVI")->isEnabled();
            menu->findChild<QAction*>("Teilen")->trigger();
            menu->close();
        });
        auto* list = w.findChild<QListView*>("ListView1");
        emit list->customContextMenuRequested(QPoint(5, 5));
        QCOMPARE(entries, QStringList({"ausschneiden", "kopieren", "einfügen", "löschen",
                                       "Umbenennen", "Größe", "zeichnen", "bearbeiten", "Teilen",
                                       "Drucken", "MakeAVI", "Redeye", "MakePano"}));
        QVERIFY(printEnabled && aviEnabled);
        w.MenüGeklickt("Redeye");
        w.MenüGeklickt("MakeAVI");
        w.MenüGeklickt("Größe");
        // A media file among the selection is not handed to a picture tool.
        w.setPattern(2);
        select(w, {"a.jpg", "c.wav"});
        w.MenüGeklickt("MakePano");
        using Opened = std::vector<std::pair<std::string, std::vector<std::string>>>;
        QCOMPARE(opened, (Opened{{"zeichnen", both},
                                 {"panorama", both},
                                 {"print", both},
                                 {"Teilen", both},
                                 {"redeye", both},
                                 {"video", both},
                                 {"Größe", both},
                                 {"panorama", {pic("a.jpg").toStdString()}}}));
    }

    void twoThousandFilesListWhileTheWindowAnswers() {
        QImage img(48, 32, QImage::Format_RGB32);
        img.fill(QColor(90, 160, 60));
        QByteArray jpeg;
        {
            QBuffer buffer(&jpeg);
            buffer.open(QIODevice::WriteOnly);
            QVERIFY(img.save(&buffer, "JPG", 85));
        }
        for (int i = 0; i < 2000; ++i) {
            std::ofstream out(
                pic(QString::asprintf("p%04d.jpg", i).toUtf8().constData()).toStdString(),
                std::ios::binary);
            out.write(jpeg.constData(), jpeg.size());
        }
        test::ScriptedPrompter prompter;
        ThreadWatch watch;
        FrmBildviewer w(prog_, {}, prompter, Language::German);
        w.setThumbnailHook(watch.hook());
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        int ticks = 0, ticksWhileMaking = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            ++ticks;
            if (w.thumbnailsShown() > 0 && w.thumbnailsShown() < 2000) ++ticksWhileMaking;
        });
        timer.start(2);
        w.showFolder(folder());
        // The listing is there at once; the thumbnails follow.
        QCOMPARE(int(w.rows().size()), 2000);
        QVERIFY(w.thumbnailsShown() < 2000);
        QTRY_COMPARE_WITH_TIMEOUT(w.thumbnailsShown(), 2000, 120000);
        QVERIFY2(ticksWhileMaking > 0, "the GUI thread did not answer while the thumbnails came");
        QCOMPARE(watch.calls.load(), 2000);
        QCOMPARE(watch.onGuiThread.load(), 0);
    }

    void theRowsOnScreenComeFirst() {
        QImage img(40, 30, QImage::Format_RGB32);
        img.fill(QColor(200, 120, 40));
        for (int i = 0; i < 300; ++i)
            QVERIFY(img.save(pic(QString::asprintf("p%03d.jpg", i).toUtf8().constData()), "JPG"));
        test::ScriptedPrompter prompter;
        // Each thumbnail waits for a permit, so the order of the work shows.
        QSemaphore permits;
        FrmBildviewer w(prog_, {}, prompter, Language::German);
        struct Release {
            QSemaphore& s;
            ~Release() { s.release(100000); }
        } release{permits};
        w.setThumbnailHook([&permits] { permits.acquire(); });
        w.findChild<QAction*>("mnuGrosseSymbole")->trigger();
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        w.showFolder(folder());
        auto* list = w.findChild<QListView*>("ListView1");
        // The list lays itself out in batches: scroll until the last row is on screen.
        auto lastOnScreen = [&] {
            list->scrollToBottom();
            return list->visualRect(model(w)->index(299, 0)).intersects(list->viewport()->rect());
        };
        QTRY_VERIFY(lastOnScreen());
        // The scroll reaches the pool before any worker is free again.
        QTest::qWait(50);
        auto hasIcon = [&](int row) { return w.rows()[row].width > 0; };
        int released = 0;
        while (!hasIcon(299) && released < 300) {
            permits.release();
            ++released;
            QTRY_COMPARE_WITH_TIMEOUT(w.thumbnailsShown(), released, 10000);
        }
        QVERIFY(hasIcon(299));
        QVERIFY2(!hasIcon(150), "a row far from the screen came before the last one on it");
        QVERIFY(released < 150);
    }

    void startWithAPictureSelectsIt() {
        saveSolid(pic("a.jpg"), 20, 20, Qt::red);
        saveSolid(pic("b.jpg"), 20, 20, Qt::red);
        test::ScriptedPrompter prompter;
        const std::vector<std::string> args{pic("b.jpg").toStdString()};
        const StartDecision decision = decideStart(args, prompter, Language::German);
        QCOMPARE(decision.startMode, std::string("brindleseeexplorer"));
        const ExplorerStart start = explorerStart(args, decision, "/", prompter, Language::German);
        QCOMPARE(start.folder, folder());
        FrmBildviewer w(prog_, {}, prompter, Language::German);
        w.selectFile(start.file);
        w.show();
        QCOMPARE(w.folder(), folder());
        QCOMPARE(w.selectedFiles(), args);
        QVERIFY(prompter.asked.empty());
    }

    void chooseFilesReturnsTheSelectionOrNothing() {
        saveSolid(pic("a.jpg"), 20, 20, Qt::red);
        saveSolid(pic("b.jpg"), 20, 20, Qt::red);
        test::ScriptedPrompter prompter;
        for (bool ok : {true, false}) {
            QTimer::singleShot(0, this, [&] {
                FrmBildviewer* w = nullptr;
                for (QWidget* top : QApplication::topLevelWidgets())
                    if (auto* b = qobject_cast<FrmBildviewer*>(top); b && b->isVisible()) w = b;
                QVERIFY(w);
                QVERIFY(w->isModal() || w->windowModality() == Qt::ApplicationModal);
                select(*w, {"b.jpg"});
                auto* buttons = w->findChild<QDialogButtonBox*>("dialogButtons");
                QVERIFY(buttons->isVisible());
                buttons->button(ok ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel)->click();
            });
            const auto chosen =
                FrmBildviewer::chooseFiles(prog_, folder(), prompter, Language::German);
            QCOMPARE(chosen, ok ? std::vector<std::string>{pic("b.jpg").toStdString()}
                                : std::vector<std::string>{});
        }
    }

    void fullViewStepsWithTheArrowKeys() {
        saveSolid(pic("a.jpg"), 40, 30, QColor(200, 0, 0));
        saveSolid(pic("b.jpg"), 40, 30, QColor(0, 200, 0));
        saveSolid(pic("c.jpg"), 40, 30, QColor(0, 0, 200));
        test::ScriptedPrompter prompter;
        FrmBildviewer w(prog_, folder(), prompter, Language::German);
        w.show();
        select(w, {"b.jpg"});
        w.findChild<QAction*>("vollbild")->trigger();
        auto* view = w.findChild<explorer::FrmVollbildViewer*>();
        QVERIFY(view);
        QCOMPARE(view->current(), 1);
        QTRY_VERIFY_WITH_TIMEOUT(!view->picture().isNull(), 10000);
        QVERIFY(near(view->picture().pixelColor(20, 15), QColor(0, 200, 0)));
        QTest::keyClick(view, Qt::Key_Right);
        QCOMPARE(view->current(), 2);
        QTRY_VERIFY_WITH_TIMEOUT(near(view->picture().pixelColor(20, 15), QColor(0, 0, 200)),
                                 10000);
        QTest::keyClick(view, Qt::Key_Right);  // stays on the last
        QCOMPARE(view->current(), 2);
        QTest::keyClick(view, Qt::Key_Left);
        QTest::keyClick(view, Qt::Key_Left);
        QCOMPARE(view->current(), 0);
        QPointer<QWidget> guard(view);
        QTest::keyClick(view, Qt::Key_Escape);
        QTRY_VERIFY(guard.isNull());
    }

    void screenshots() {
        const QString out = qEnvironmentVariable("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS is not set");
        const char* const places[] = {"Abendsee",    "Bergblick", "Dünen",       "Fjord",
                                      "Heide",       "Hochmoor",  "Kiefernwald", "Küste",
                                      "Morgennebel", "Seeufer",   "Talblick",    "Waldrand"};
        for (int i = 0; i < 12; ++i)
            savePhoto(pictures_.filePath(QString::fromUtf8(places[i]) + ".jpg"), i);
        for (const char* sub : {"Familie", "Scans", "Urlaub"}) QDir(pictures_.path()).mkdir(sub);
        test::ScriptedPrompter prompter;
        const std::pair<const char*, const char*> modes[] = {{"mnuDetails", "details"},
                                                             {"mnuListe", "liste"},
                                                             {"mnuKleineSymbole", "kleine_symbole"},
                                                             {"mnuGrosseSymbole", "grosse_symbole"},
                                                             {"mnuBildansicht", "bildansicht"}};
        for (Language lang : {Language::German, Language::English}) {
            FrmBildviewer w(prog_, folder(), prompter, lang);
            w.resize(1280, 800);
            w.show();
            QVERIFY(QTest::qWaitForWindowExposed(&w));
            QTRY_COMPARE_WITH_TIMEOUT(w.thumbnailsShown(), 12, 60000);
            select(w, {QString::fromUtf8("Fjord.jpg")});
            // The tree starts at the pictures' folder, not at the test machine's root.
            auto* tree = w.findChild<QTreeView*>("dirTree");
            auto* dirs = qobject_cast<QFileSystemModel*>(tree->model());
            tree->setRootIndex(dirs->index(pictures_.path()));
            for (const auto& [action, name] : modes) {
                w.findChild<QAction*>(action)->trigger();
                if (std::string(action) == "mnuBildansicht")
                    QTRY_VERIFY_WITH_TIMEOUT(!w.previewPicture().isNull(), 20000);
                QTest::qWait(200);
                const QString file =
                    out + "/explorer_" + name + (lang == Language::German ? "_de" : "_en") + ".png";
                QVERIFY(w.grab().save(file));
            }
            const QString suffix = lang == Language::German ? "_de.png" : "_en.png";
            explorer::FrmUmbenennenMulti rename(lang);
            rename.show();
            QVERIFY(QTest::qWaitForWindowExposed(&rename));
            QVERIFY(rename.grab().save(out + "/rename_many" + suffix));
            explorer::FrmVollbildViewer full({pictures_.filePath("Fjord.jpg").toStdString()}, 0, lang);
            full.resize(1200, 800);
            full.show();
            QVERIFY(QTest::qWaitForWindowExposed(&full));
            QTRY_VERIFY_WITH_TIMEOUT(!full.picture().isNull(), 20000);
            QTest::qWait(200);
            QVERIFY(full.grab().save(out + "/full_view" + suffix));
        }
    }
};

QTEST_MAIN(BildviewerWindowTest)
#include "bildviewer_window_test.moc"
