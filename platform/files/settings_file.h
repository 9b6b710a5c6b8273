// The per-user settings file. Reads go to the file (parsed again only when it has changed
// on disk); writes wait in memory until commit(), which replaces the whole file in one
// atomic step, so a program killed at any moment leaves either the old file or the new one
// and the best score never parts from its holder.
#pragma once

#include <sys/types.h>

#include <ctime>
#include <string>
#include <vector>

#include "game/world.h"
#include "platform/files/ini_text.h"

namespace quillop {

class SettingsFile : public SettingsStore {
public:
    // An empty path keeps the settings in memory only.
    explicit SettingsFile(std::string path);

    std::string read(const std::string& section, const std::string& key,
                     const std::string& fallback) override;
    void write(const std::string& section, const std::string& key, const std::string& value) override;

    // Puts every write since the last commit into the file at once: the file is read again
    // under a lock, a higher best score stored meanwhile by another copy of the game (with
    // its holder) is kept, and the result replaces the file through a synced temporary file.
    // Returns an empty text, or in plain words why the file could not be written; the writes
    // then stay pending for the next commit.
    std::string commit();

    const std::string& path() const { return path_; }

private:
    struct Write {
        std::string section, key, value;
    };
    struct Stamp {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = -1;
        timespec modified{}, changed{};
        bool operator==(const Stamp& o) const;
    };
    const ini::Document& stored();
    void applyPending(ini::Document& doc) const;
    std::string replaceFile(const std::string& target, int directory, const std::string& before,
                            const std::string& after, mode_t mode);

    std::string path_;
    std::vector<Write> pending_;
    ini::Document document_;  // the file as last read, or everything when in memory
    Stamp stamp_;
};

// $XDG_CONFIG_HOME/Quillop/Quillop.conf, or ~/.config/Quillop/Quillop.conf; empty when
// neither names a usable folder, with the reason in whyNone.
std::string settingsFilePath(std::string& whyNone);

}  // namespace quillop
