// Get, save and list text values by application, section and key: the
// recent files. The GUI uses QSettings; the CLI and tests an INI file.
#pragma once

#include <map>
#include <string>

namespace brindle {

class SettingsStore {
public:
    virtual ~SettingsStore() = default;
    virtual std::string get(const std::string& app, const std::string& section, const std::string& key) = 0;
    virtual void save(const std::string& app, const std::string& section, const std::string& key,
                      const std::string& value) = 0;
    // All keys and values of a section.
    virtual std::map<std::string, std::string> list(const std::string& app, const std::string& section) = 0;
};

// One INI file: "[app/section]" groups of "key=value" lines. Written on
// every save, atomically.
class IniSettingsStore : public SettingsStore {
public:
    explicit IniSettingsStore(std::string path);
    std::string get(const std::string& app, const std::string& section, const std::string& key) override;
    void save(const std::string& app, const std::string& section, const std::string& key,
              const std::string& value) override;
    std::map<std::string, std::string> list(const std::string& app, const std::string& section) override;

private:
    void load();
    void store() const;

    std::string path_;
    std::map<std::string, std::map<std::string, std::string>> groups_;
};

}  // namespace brindle
