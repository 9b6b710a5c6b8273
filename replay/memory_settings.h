// A settings store in memory: a replayed game and the headless tool read their settings
// from it, and nothing they write lasts beyond the run.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "game/world.h"

namespace quillop {

struct MemorySettings : SettingsStore {
    std::map<std::string, std::string> values;  // "Section/Key"
    std::vector<std::string> writes;            // "Section/Key=value", in order
    std::string read(const std::string& section, const std::string& key,
                     const std::string& fallback) override {
        const auto it = values.find(section + "/" + key);
        return it == values.end() ? fallback : it->second;
    }
    void write(const std::string& section, const std::string& key, const std::string& value) override {
        values[section + "/" + key] = value;
        writes.push_back(section + "/" + key + "=" + value);
    }
};

}  // namespace quillop
