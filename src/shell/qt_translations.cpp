#include "shell/qt_translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QPointer>
#include <QTranslator>

namespace brindle::shell {

bool useQtTranslations(Language language) {
    static QPointer<QTranslator> german;
    if (language == Language::English) {
        if (german) QCoreApplication::removeTranslator(german);
        return true;
    }
    if (!german) {
        german = new QTranslator(QCoreApplication::instance());
        // "qt_de" gathers the catalogues of every Qt module.
        if (!german->load("qt_de", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
            delete german;
            return false;
        }
    }
    QCoreApplication::installTranslator(german);  // installing again only moves it to the front
    return true;
}

}  // namespace brindle::shell
