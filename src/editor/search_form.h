// The search element as a working form in play mode: the words go to the
// album's search (the same data the HTML album's search reads) and the
// pages found are listed below the form; a click opens one.
#pragma once

#include <QListWidget>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "album/language.h"
#include "album/records.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace brindle::editor {

class SearchForm : public QWidget {
    Q_OBJECT
public:
    // The page links found for the words, or nothing when the search could
    // not run (and said why).
    using Search = std::function<std::optional<std::vector<std::string>>(const std::string& words, bool matchCase)>;
    using Open = std::function<void(const std::string& link)>;

    SearchForm(const SearchElement& element, Language language, Search search, Open open, QWidget* parent);
    ~SearchForm() override;

    QLineEdit* input() const { return eingabe_; }
    QPushButton* startButton() const { return cmdSuchen_; }
    QPushButton* clearButton() const { return cmdLoeschen_; }
    QCheckBox* caseBox() const { return chkGross_; }
    // The list of pages found; it lies on the canvas just below the form.
    QListWidget* results() const { return results_; }
    void suche();

protected:
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void placeResults();
    const char* t(const char* de, const char* en) const { return brindle::tr(language_, de, en); }

    Language language_;
    Search search_;
    Open open_;
    QLabel* caption_;
    QLineEdit* eingabe_;
    QPushButton* cmdSuchen_;
    QPushButton* cmdLoeschen_;
    QCheckBox* chkGross_;
    QPointer<QListWidget> results_;
};

}  // namespace brindle::editor
