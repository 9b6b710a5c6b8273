// The per-user settings store as an INI file, ~/.config/Quillop/Quillop.conf (or under
// $XDG_CONFIG_HOME), every value kept as text; in memory only when there is no usable home.
#pragma once

#include <QString>

#include "platform/files/settings_file.h"

namespace quillop {

class QtSettingsStore : public SettingsFile {
public:
    QtSettingsStore();
    QString fileName() const { return QString::fromStdString(path()); }
};

}  // namespace quillop
