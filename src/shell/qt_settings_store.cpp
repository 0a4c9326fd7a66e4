#include "shell/qt_settings_store.h"

#include <QSettings>

namespace brindle::shell {

namespace {
QString groupKey(const std::string& section, const std::string& key) {
    return QString::fromStdString(section) + "/" + QString::fromStdString(key);
}
}  // namespace

std::string QtSettingsStore::get(const std::string& app, const std::string& section, const std::string& key) {
    QSettings settings("Brindlesee", QString::fromStdString(app));
    return settings.value(groupKey(section, key)).toString().toStdString();
}

void QtSettingsStore::save(const std::string& app, const std::string& section, const std::string& key,
                           const std::string& value) {
    QSettings settings("Brindlesee", QString::fromStdString(app));
    settings.setValue(groupKey(section, key), QString::fromStdString(value));
}

std::map<std::string, std::string> QtSettingsStore::list(const std::string& app, const std::string& section) {
    QSettings settings("Brindlesee", QString::fromStdString(app));
    settings.beginGroup(QString::fromStdString(section));
    std::map<std::string, std::string> out;
    for (const QString& key : settings.childKeys()) out[key.toStdString()] = settings.value(key).toString().toStdString();
    return out;
}

}  // namespace brindle::shell
