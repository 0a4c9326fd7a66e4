// The docked album explorer: a tree view on the album's pages and its
// templates. Dragging a page moves it in the page list.
#pragma once

#include <QTreeWidget>

#include "album/session.h"

namespace brindle::shell {

class AlbumExplorer : public QTreeWidget {
    Q_OBJECT
public:
    explicit AlbumExplorer(Session& session, QWidget* parent = nullptr);

    // Rebuilds the tree from the album.
    void AktualisiereAlbumExplorer();
    // The node of a key: "AlbumZu", "Seite" + index, "Vorlagen", "Allgemein",
    // "Seitenvorlage", "Umschlagvorlage"; nullptr when there is none.
    QTreeWidgetItem* node(const QString& key) const;
    void markPage(int index);
    // What a double click on the node does, also for tests.
    void activateNode(QTreeWidgetItem* item);
    // Moves page `from` to place `to` (both from 1), as a drag does.
    void movePage(int from, int to);

signals:
    void pageWanted(int index);
    void pageRemovalWanted(int index);
    void newPageWanted();
    void optionsWanted();
    void templateWanted(bool cover);

protected:
    void dropEvent(QDropEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    QTreeWidgetItem* addNode(QTreeWidgetItem* parent, const QString& key, const QString& text, const QString& icon);
    const char* t(const char* de, const char* en) const { return brindle::tr(session_.language(), de, en); }

    Session& session_;
};

}  // namespace brindle::shell
