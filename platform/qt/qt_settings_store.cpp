#include "platform/qt/qt_settings_store.h"

#include <cstdio>

namespace quillop {
namespace {

std::string locatedSettingsFile() {
    std::string whyNone;
    std::string path = settingsFilePath(whyNone);
    // Without a home the file would land at the root of the file system; the settings
    // then last as long as the run, and the player is told once.
    static bool told = false;
    if (path.empty() && !told) {
        told = true;
        std::fprintf(stderr, "Quillop: %s, so the best score and the window places are kept "
                             "only until the game closes.\n", whyNone.c_str());
    }
    return path;
}

}  // namespace

QtSettingsStore::QtSettingsStore() : SettingsFile(locatedSettingsFile()) {}

}  // namespace quillop
