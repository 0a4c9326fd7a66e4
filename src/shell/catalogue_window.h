// frmVorlagen: the template catalogue. A tree of the templates in
// "Vorlagen" with the chosen one's preview; loads one as a new album and
// carries templates to and from ".bsv" exchange files.
#pragma once

#include <QDialog>

#include "album/language.h"

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace brindle {
class Session;
}

namespace brindle::shell {

class CatalogueWindow : public QDialog {
    Q_OBJECT
public:
    CatalogueWindow(Session& session, QWidget* parent = nullptr);

    QTreeWidget* tree() const { return tree_; }
    QLabel* preview() const { return preview_; }
    // The chosen template's path; empty when the root or nothing is chosen.
    QString chosenPath() const;
    void choose(const QString& name);
    // Re-reads the catalogue folder, keeping the choice where it can.
    void refresh();
    void Sprachumschaltung(Language language);

    void load();
    void exportChosen();
    void importFile();

signals:
    // A new album was made with the chosen template's look.
    void albumLoaded();

private:
    void showPreview();
    const char* t(const char* de, const char* en) const;

    Session& session_;
    QTreeWidget* tree_ = nullptr;
    QTreeWidgetItem* root_ = nullptr;
    QLabel* preview_ = nullptr;
    QLabel* caption_ = nullptr;
    QPushButton* load_ = nullptr;
    QPushButton* export_ = nullptr;
    QPushButton* import_ = nullptr;
    QPushButton* close_ = nullptr;
};

}  // namespace brindle::shell
