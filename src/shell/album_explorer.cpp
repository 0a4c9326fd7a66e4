#include "shell/album_explorer.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMenu>
#include <QHeaderView>

#include "album/album_file.h"
#include "shell/tool_icons.h"

namespace brindle::shell {

namespace {
constexpr int kKeyRole = Qt::UserRole;
}

AlbumExplorer::AlbumExplorer(Session& session, QWidget* parent) : QTreeWidget(parent), session_(session) {
    setObjectName("AlbumExplorer");
    setHeaderHidden(true);
    setRootIsDecorated(true);
    setIconSize(QSize(18, 18));
    setDragDropMode(QAbstractItemView::InternalMove);
    setDefaultDropAction(Qt::MoveAction);
    setExpandsOnDoubleClick(false);
    connect(this, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) { activateNode(item); });
}

QTreeWidgetItem* AlbumExplorer::addNode(QTreeWidgetItem* parent, const QString& key, const QString& text,
                                        const QString& icon) {
    auto* item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(this);
    item->setText(0, text);
    item->setData(0, kKeyRole, key);
    item->setIcon(0, toolIcon(icon));
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (key.startsWith("Seite") && key != "Seitenvorlage") flags |= Qt::ItemIsDragEnabled;
    if (key == "AlbumZu" || (key.startsWith("Seite") && key != "Seitenvorlage")) flags |= Qt::ItemIsDropEnabled;
    item->setFlags(flags);
    return item;
}

void AlbumExplorer::AktualisiereAlbumExplorer() {
    const LogSink& log = session_.log();
    logLine(log, "Module 1 - AktualisiereAlbumExplorer - Start");
    clear();
    logLine(log, "Module 1 - AktualisiereAlbumExplorer - Knoten definieren");
    const AlbumRecord& a = session_.album();
    logLine(log, "Module 1 - AktualisiereAlbumExplorer - Knoten Album Zu");
    QTreeWidgetItem* album = addNode(nullptr, "AlbumZu", QString::fromStdString(a.title), "album");
    for (int i = 1; i <= a.pages.upper(); ++i) {
        logLine(log, "Module 1 - AktualisiereAlbumExplorer - Seite");
        addNode(album, "Seite" + QString::number(i), QString::fromStdString(a.pages[i].title), "page");
    }
    logLine(log, "Module 1 - AktualisiereAlbumExplorer - Knoten Vorlagen");
    QTreeWidgetItem* templates = addNode(nullptr, "Vorlagen", t("Vorlagen", "Templates"), "templates");
    addNode(templates, "Allgemein", t("Allgemein", "Options"), "options");
    addNode(templates, "Seitenvorlage", t("Seitenvorlage", "Page template"), "page");
    addNode(templates, "Umschlagvorlage", t("Umschlagvorlage", "Cover template"), "album");
    expandAll();
    logLine(log, "Module 1 - AktualisiereAlbumExplorer - Ende");
}

QTreeWidgetItem* AlbumExplorer::node(const QString& key) const {
    for (QTreeWidgetItemIterator it(const_cast<AlbumExplorer*>(this)); *it; ++it)
        if ((*it)->data(0, kKeyRole).toString() == key) return *it;
    return nullptr;
}

void AlbumExplorer::markPage(int index) {
    if (QTreeWidgetItem* item = node("Seite" + QString::number(index))) setCurrentItem(item);
}

void AlbumExplorer::activateNode(QTreeWidgetItem* item) {
    if (!item) return;
    const QString key = item->data(0, kKeyRole).toString();
    if (key.startsWith("Seite") && key != "Seitenvorlage") emit pageWanted(key.mid(5).toInt());
    else if (key == "Allgemein") emit optionsWanted();
    else if (key == "Seitenvorlage") emit templateWanted(false);
    else if (key == "Umschlagvorlage") emit templateWanted(true);
}

// CheckExplorerMenu: what the node under the mouse offers.
void AlbumExplorer::contextMenuEvent(QContextMenuEvent* event) {
    QTreeWidgetItem* item = itemAt(event->pos());
    if (!item) return;
    const QString key = item->data(0, kKeyRole).toString();
    QMenu menu(this);
    if (key.startsWith("Seite") && key != "Seitenvorlage") {
        const int index = key.mid(5).toInt();
        const std::string title = session_.album().pages[index].title;
        menu.addAction(t("Seite &öffnen", "&Open page"), this, [this, index] { emit pageWanted(index); });
        menu.addAction(QString::fromStdString(session_.language() == Language::German ? title + " entfernen"
                                                                                      : "Delete " + title),
                       this, [this, index] { emit pageRemovalWanted(index); });
    } else if (key == "AlbumZu") {
        menu.addAction(t("&Neue Seite hinzufügen", "Add &new page"), this, [this] { emit newPageWanted(); });
    } else {
        menu.addAction(t("Ö&ffnen", "&Open"), this, [this, item] { activateNode(item); });
    }
    menu.exec(event->globalPos());
}

void AlbumExplorer::movePage(int from, int to) {
    AlbumRecord& a = session_.album();
    if (from < 1 || to < 1 || from > a.pages.upper() || to > a.pages.upper() || from == to) return;
    movePageEntry(a, from, to);
    AktualisiereAlbumExplorer();
    markPage(to);
}

void AlbumExplorer::dropEvent(QDropEvent* event) {
    QTreeWidgetItem* dragged = currentItem();
    QTreeWidgetItem* target = itemAt(event->position().toPoint());
    event->setDropAction(Qt::IgnoreAction);  // the tree is rebuilt from the album, not moved in place
    event->accept();
    if (!dragged || !target) return;
    const QString from = dragged->data(0, kKeyRole).toString(), onto = target->data(0, kKeyRole).toString();
    if (!from.startsWith("Seite") || from == "Seitenvorlage") return;
    const int to = onto == "AlbumZu" ? 1 : onto.startsWith("Seite") && onto != "Seitenvorlage" ? onto.mid(5).toInt() : 0;
    if (to > 0) movePage(from.mid(5).toInt(), to);
}

}  // namespace brindle::shell
