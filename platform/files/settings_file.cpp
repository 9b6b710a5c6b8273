#include "platform/files/settings_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "game/base/number_text.h"

namespace quillop {
namespace {

constexpr const char* kBestSection = "Gorvane";
constexpr time_t kStaleTemporary = 600;  // seconds: surely left by a copy that was killed

std::string reason(int error) { return std::strerror(error); }

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

// The file a symlink points to, so the link itself survives the replacement.
std::string followLinks(const std::string& path) {
    std::string target = path;
    for (int hop = 0; hop < 16; ++hop) {
        struct stat st {};
        if (lstat(target.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) break;
        char buffer[PATH_MAX];
        const ssize_t n = readlink(target.c_str(), buffer, sizeof buffer - 1);
        if (n <= 0) break;
        const std::string link(buffer, static_cast<std::size_t>(n));
        target = link.front() == '/' ? link : folderOf(target) + "/" + link;
    }
    return target;
}

bool makeFolders(const std::string& folder, std::string& failed, int& error) {
    struct stat st {};
    if (stat(folder.c_str(), &st) == 0) return true;
    if (folder != "/" && folder != "." && !makeFolders(folderOf(folder), failed, error)) return false;
    if (mkdir(folder.c_str(), 0777) == 0 || errno == EEXIST) return true;
    failed = folder;
    error = errno;
    return false;
}

// The whole file; false with errno set when it exists but cannot be read.
bool readWhole(const std::string& path, std::string& text, struct stat* st) {
    text.clear();
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return errno == ENOENT;
    if (st) fstat(fd, st);
    char buffer[65536];
    ssize_t n = 0;
    while ((n = read(fd, buffer, sizeof buffer)) > 0 || (n < 0 && errno == EINTR))
        if (n > 0) text.append(buffer, static_cast<std::size_t>(n));
    const int error = errno;
    close(fd);
    errno = error;
    return n == 0;
}

bool writeAll(int fd, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

mode_t newFileMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

// Temporaries of copies that were killed between creating and renaming them.
void removeStaleTemporaries(int directory, const std::string& prefix) {
    const int fd = dup(directory);
    DIR* dir = fd < 0 ? nullptr : fdopendir(fd);
    if (!dir) {
        if (fd >= 0) close(fd);
        return;
    }
    const time_t now = time(nullptr);
    while (const dirent* entry = readdir(dir)) {
        const std::string name = entry->d_name;
        struct stat st {};
        if (name.size() == prefix.size() + 6 && name.compare(0, prefix.size(), prefix) == 0 &&
            fstatat(directory, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(st.st_mode) &&
            now - st.st_mtime > kStaleTemporary)
            unlinkat(directory, name.c_str(), 0);
    }
    closedir(dir);
}

}  // namespace

bool SettingsFile::Stamp::operator==(const Stamp& o) const {
    return device == o.device && inode == o.inode && size == o.size && modified.tv_sec == o.modified.tv_sec &&
           modified.tv_nsec == o.modified.tv_nsec && changed.tv_sec == o.changed.tv_sec &&
           changed.tv_nsec == o.changed.tv_nsec;
}

SettingsFile::SettingsFile(std::string path) : path_(std::move(path)) {}

const ini::Document& SettingsFile::stored() {
    if (path_.empty()) return document_;
    // Another copy of the game may have written the file since: look at it on every read,
    // but parse it again only when it has changed.
    struct stat st {};
    Stamp now;
    if (stat(path_.c_str(), &st) == 0) now = {st.st_dev, st.st_ino, st.st_size, st.st_mtim, st.st_ctim};
    if (now == stamp_) return document_;
    std::string text;
    readWhole(path_, text, nullptr);  // unreadable: read as empty, and commit will say why
    document_ = ini::Document::parse(text);
    stamp_ = now;
    return document_;
}

std::string SettingsFile::read(const std::string& section, const std::string& key, const std::string& fallback) {
    for (auto it = pending_.rbegin(); it != pending_.rend(); ++it)
        if (it->section == section && it->key == key) return it->value;
    const std::string* value = stored().find(section, key);
    return value ? *value : fallback;
}

void SettingsFile::write(const std::string& section, const std::string& key, const std::string& value) {
    pending_.push_back({section, key, value});
}

void SettingsFile::applyPending(ini::Document& doc) const {
    // Two copies of the game on one account: the one that closes last must not undo the
    // other's new best score with the lower one it read at its start.
    double storedBest = 0, ourBest = 0;
    const std::string* stored = doc.find(kBestSection, "Highscore");
    bool keepStoredBest = false;
    for (const Write& w : pending_)
        if (w.section == kBestSection && w.key == "Highscore")
            keepStoredBest = stored && parseNumber(*stored, storedBest) &&
                             (!parseNumber(w.value, ourBest) || storedBest > ourBest);
    for (const Write& w : pending_) {
        if (keepStoredBest && w.section == kBestSection && (w.key == "Highscore" || w.key == "Highscorer"))
            continue;
        doc.set(w.section, w.key, w.value);
    }
}

std::string SettingsFile::commit() {
    if (pending_.empty()) return {};
    if (path_.empty()) {
        applyPending(document_);
        pending_.clear();
        return {};
    }
    const std::string target = followLinks(path_);
    const std::string folder = folderOf(target);
    std::string failedFolder;
    int error = 0;
    if (!makeFolders(folder, failedFolder, error))
        return "cannot create the folder " + failedFolder + ": " + reason(error);
    const int directory = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0) return "cannot open the folder " + folder + ": " + reason(errno);
    // Another copy of the game commits under the same lock; it goes with the descriptor.
    flock(directory, LOCK_EX);
    std::string before;
    struct stat st {};
    st.st_mode = S_IFREG | newFileMode();
    std::string failure;
    if (!readWhole(target, before, &st)) {
        // A file we cannot read is not replaced: it may hold a best score.
        failure = "cannot read " + target + ": " + reason(errno);
    } else {
        ini::Document doc = ini::Document::parse(before);
        applyPending(doc);
        failure = replaceFile(target, directory, before, doc.text(), st.st_mode & 07777);
        if (failure.empty()) {
            pending_.clear();
            stamp_ = {};  // read again on the next read
        }
    }
    close(directory);
    return failure;
}

std::string SettingsFile::replaceFile(const std::string& target, int directory, const std::string& before,
                                      const std::string& after, mode_t mode) {
    struct stat st {};
    if (after == before && stat(target.c_str(), &st) == 0) return {};  // nothing changes
    const std::string prefix = "." + nameOf(target) + ".";
    std::string temporary = folderOf(target) + "/" + prefix + "XXXXXX";
    const int fd = mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0) return "cannot write in the folder " + folderOf(target) + ": " + reason(errno);
    bool ok = writeAll(fd, after) && fchmod(fd, mode) == 0 && fsync(fd) == 0;
    int error = ok ? 0 : errno;
    if (close(fd) != 0 && ok) ok = false, error = errno;
    if (ok && rename(temporary.c_str(), target.c_str()) != 0) ok = false, error = errno;
    if (!ok) {
        unlink(temporary.c_str());
        return "cannot write " + target + ": " + reason(error);
    }
    fsync(directory);  // the rename itself must reach the disk
    removeStaleTemporaries(directory, prefix);
    return {};
}

std::string settingsFilePath(std::string& whyNone) {
    const auto usableFolder = [](const char* path) {
        struct stat st {};
        return path && path[0] == '/' && stat(path, &st) == 0 && S_ISDIR(st.st_mode);
    };
    const char* config = std::getenv("XDG_CONFIG_HOME");
    if (config && config[0] == '/') return std::string(config) + "/Quillop/Quillop.conf";
    const char* home = std::getenv("HOME");
    if (!home || !home[0]) {
        whyNone = "HOME is not set";
        return {};
    }
    if (!usableFolder(home)) {
        whyNone = "HOME (" + std::string(home) + ") is not a folder";
        return {};
    }
    if (std::string(home) == "/") {
        whyNone = "HOME is the root of the file system";
        return {};
    }
    return std::string(home) + "/.config/Quillop/Quillop.conf";
}

}  // namespace quillop
