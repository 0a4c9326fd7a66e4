#include "album/settings_store.h"

#include <sstream>

#include "album/file_io.h"

namespace brindle {

IniSettingsStore::IniSettingsStore(std::string path) : path_(std::move(path)) { load(); }

void IniSettingsStore::load() {
    std::string text;
    if (!readWholeFile(path_, text, 1u << 20).ok) return;
    std::istringstream in(text);
    std::string line, group;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.size() >= 2 && line.front() == '[' && line.back() == ']') {
            group = line.substr(1, line.size() - 2);
        } else if (auto eq = line.find('='); eq != std::string::npos && !group.empty()) {
            groups_[group][line.substr(0, eq)] = line.substr(eq + 1);
        }
    }
}

void IniSettingsStore::store() const {
    std::string text;
    for (const auto& [group, values] : groups_) {
        text += "[" + group + "]\n";
        for (const auto& [k, v] : values) text += k + "=" + v + "\n";
    }
    writeFileAtomic(path_, text);
}

std::string IniSettingsStore::get(const std::string& app, const std::string& section, const std::string& key) {
    auto g = groups_.find(app + "/" + section);
    if (g == groups_.end()) return {};
    auto v = g->second.find(key);
    return v == g->second.end() ? std::string{} : v->second;
}

void IniSettingsStore::save(const std::string& app, const std::string& section, const std::string& key,
                            const std::string& value) {
    // Keys and values are single lines.
    std::string clean = value;
    for (char& c : clean)
        if (c == '\n' || c == '\r') c = ' ';
    groups_[app + "/" + section][key] = clean;
    store();
}

std::map<std::string, std::string> IniSettingsStore::list(const std::string& app, const std::string& section) {
    auto g = groups_.find(app + "/" + section);
    return g == groups_.end() ? std::map<std::string, std::string>{} : g->second;
}

}  // namespace brindle
