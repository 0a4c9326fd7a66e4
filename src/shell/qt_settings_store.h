// The settings store of the desktop program: QSettings of the application
// "Brindlesee", one group per section.
#pragma once

#include "album/settings_store.h"

namespace brindle::shell {

class QtSettingsStore : public SettingsStore {
public:
    std::string get(const std::string& app, const std::string& section, const std::string& key) override;
    void save(const std::string& app, const std::string& section, const std::string& key,
              const std::string& value) override;
    std::map<std::string, std::string> list(const std::string& app, const std::string& section) override;
};

}  // namespace brindle::shell
