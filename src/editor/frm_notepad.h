// frmNotePad: the window of one open page. Its Tag is the session slot;
// it holds the page's document and canvas, asks and saves through the
// album flows when it closes, and keeps template pages in the album.
#pragma once

#include <QMdiSubWindow>
#include <QPointer>
#include <QWidget>
#include <optional>
#include <vector>

#include "album/page_editor.h"
#include "album/session.h"
#include "editor/notepad_host.h"
#include "editor/page_canvas.h"
#include "editor/page_document.h"
#include "editor/qt_text_metrics.h"

class QLabel;
class QMdiArea;
class QScrollArea;
class QToolButton;

namespace brindle::editor {

class FrmNotePad : public QWidget {
    Q_OBJECT
public:
    FrmNotePad(Session& session, int slot, NotePadHost& host, QWidget* parent = nullptr);

    int tag() const { return slot_; }
    PageDocument& document() { return doc_; }
    PageCanvas* canvas() { return canvas_; }
    QScrollArea* scrollArea() { return scroll_; }
    QString caption() const { return windowTitle(); }
    void setCaption(const QString& caption);
    QString removeMenuText() const { return removeMenuText_; }
    void setRemoveMenuText(const QString& text) { removeMenuText_ = text; }

    void NeuZeichnen();
    void Sprachumschaltung();
    // Template pages ("Seitenvorlage", "Umschlagvorlage") keep their contents in the album.
    bool isTemplatePage() const;
    void copyTemplateBack();
    void activated();
    void deactivated();

    // Commands of the window and its menus.
    void cmdZoom_Click();
    void grow(bool horizontal, bool plus);
    bool mnuFSave_Click();
    bool mnuFSaveAs_Click();
    void mnuSeiteEntfernen_Click();
    void mnuZurSeitenvorlage_Click(bool cover);
    void editText(ElementRef ref);

    // Play mode: effects over the animated pictures, a live panorama viewer
    // and search form over their elements; gone again when play ends.
    void PlaymodeEinstellen();
    // Follows an element's link in play mode.
    void SpiegelLink(const std::string& target, Kind kind, int page, int number);
    // Clicks on the rain and underwater effects: the picture's link.
    void rainclick(int index);
    void underwaterclick(int index);
    // The full view opened last by "<vollbild>", while it is open.
    QWidget* vollbild() const { return vollbild_; }

    // The window may close: templates copied back, changes asked for.
    bool queryClose();
    void setUnloading() { unloading_ = true; }
    bool unloading() const { return unloading_; }

signals:
    void stateChanged();

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void wireDocument();
    void insertInBox(Box box);
    void insertPicture(Box box);
    std::vector<std::string> askPictureFiles(bool several);
    void insertPictures(Point start, const std::vector<std::string>& paths);
    void showContextMenu(ElementRef ref, QPoint globalPos);
    void updateCanvasSize();
    void notifyHost();
    void reportPictureFailure();
    void removePlayControls();
    void dropPlayControl(ElementRef ref);
    void addEffect(int index);
    void addPanorama(int index);
    void addSearch(int index);
    void placePlayControl(QWidget* w, ElementRef ref, const QString& name);
    // The element's picture is hidden under its play control (Image1 hidden).
    bool coveredInPlay(ElementRef ref) const;
    void playPageMusic();
    QString resolvePath(const std::string& stored) const;
    const char* t(const char* de, const char* en) const { return brindle::tr(session_.language(), de, en); }

    Session& session_;
    int slot_;
    NotePadHost& host_;
    QtTextMetrics metrics_;
    PageDocument doc_;
    QScrollArea* scroll_;
    PageCanvas* canvas_;
    QToolButton* cmdZoom_;
    QToolButton* cmdHminus_;
    QToolButton* cmdHplus_;
    QToolButton* cmdVminus_;
    QToolButton* cmdVplus_;
    QLabel* lblBreite_;
    QLabel* lblHoehe_;
    QString removeMenuText_;
    bool unloading_ = false;
    int failuresToTell_ = 0;
    bool tellingFailures_ = false;
    std::vector<QPointer<QWidget>> playControls_;
    QPointer<QWidget> vollbild_;
};

// The sub-window of the MDI area that holds a page window; closing it asks first.
class NotePadWindow : public QMdiSubWindow {
    Q_OBJECT
public:
    NotePadWindow(Session& session, FrmNotePad* pad);
    FrmNotePad* pad() const { return pad_; }
    void setEditor(const PageEditor* editor) { editor_ = editor; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    Session& session_;
    FrmNotePad* pad_;
    const PageEditor* editor_ = nullptr;
};

// The album flows' handle on a page window.
class NotePadEditor : public PageEditor {
public:
    NotePadEditor(QMdiArea* area, NotePadWindow* window);
    ~NotePadEditor() override;
    void show() override;
    void activate() override;
    void unload() override;
    void setCaption(const std::string& caption) override;
    std::string caption() const override;
    void setRemoveMenuText(const std::string& text) override;
    NotePadWindow* window() const { return window_; }

private:
    QPointer<QMdiArea> area_;
    QPointer<NotePadWindow> window_;
};

// Makes page windows in the MDI area; usable from the HTML run's thread.
class NotePadFactory : public PageEditorFactory {
public:
    NotePadFactory(QMdiArea* area, NotePadHost& host) : area_(area), host_(host) {}
    void setSession(Session* session) { session_ = session; }
    std::unique_ptr<PageEditor> create(int slot, std::string& error) override;

private:
    QMdiArea* area_;
    NotePadHost& host_;
    Session* session_ = nullptr;
};

}  // namespace brindle::editor
