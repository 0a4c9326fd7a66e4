// frmUmbenennenMulti: how several selected files are renamed at once, a
// search text replaced in every name or every name in small letters.
#pragma once

#include <QDialog>

#include "album/language.h"
#include "explorer/file_operations.h"

class QCheckBox;
class QComboBox;
class QLabel;

namespace brindle::explorer {

class FrmUmbenennenMulti : public QDialog {
    Q_OBJECT
  public:
    FrmUmbenennenMulti(Language language, QWidget* parent = nullptr);
    RenameRule rule() const;

  private:
    QComboBox* cmbSuchenNach_;
    QComboBox* cmbErsetztenDurch_;
    QCheckBox* chkGroßKlein_;
    QCheckBox* chkKleinschreibung_;
};

}  // namespace brindle::explorer
