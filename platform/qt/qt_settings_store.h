// The per-user settings store as an INI file (~/.config/Quillop/Quillop.conf), one
// "Section/Key" entry per value, every value kept as text.
#pragma once

#include <QSettings>

#include "game/world.h"

namespace quillop {

class QtSettingsStore : public SettingsStore {
public:
    QtSettingsStore();
    std::string read(const std::string& section, const std::string& key,
                     const std::string& fallback) override;
    void write(const std::string& section, const std::string& key, const std::string& value) override;
    QString fileName() const { return settings_.fileName(); }

private:
    QSettings settings_;
};

}  // namespace quillop
