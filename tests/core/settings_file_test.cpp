// The settings file: damaged text costs only its own lines, a save is one atomic replacement
// whatever moment the game is killed at, two copies of the game never undo each other's best
// score, and a save that cannot happen says why.
#include <gtest/gtest.h>
#include <signal.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <sstream>
#include <tuple>

#include "game/dialog_rules.h"
#include "game/settings_values.h"
#include "platform/files/settings_file.h"
#include "rig.h"

using namespace quillop;
namespace fs = std::filesystem;

namespace {

// A file as the game writes it, with a holder that needs quoting and escapes.
const std::vector<std::string> kValidLines = {
    "[Gorvane]", "Top=400", "Left=100", "Height=4000", "Width=4000", "Windowstate=0", "Highscore=4321",
    "Highscorer=\"Good \\\"Name\\\"; ok\"", "", "[Help]", "Top=400", "Left=200", "", "[MDI]", "Height=6000",
    "Left=300", "Top=300", "Width=7000", "Windowstate=0"};

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

std::string slurp(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void put(const fs::path& path, const std::string& text) {
    fs::remove(path);  // truncating in place would make ext4 flush it to disk on every close
    std::ofstream(path, std::ios::binary) << text;
}

// Runs `body` in a child process, which may change its user or its environment; true when
// the child ran it through and it said yes.
template <class Body>
bool inChild(Body body) {
    const pid_t child = fork();
    if (child == 0) _exit(body() ? 0 : 1);
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class SettingsFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        char name[] = "/tmp/quillop-settings-XXXXXX";
        root_ = mkdtemp(name);
        chmod(root_.c_str(), 0755);  // reachable by the unprivileged child of the read-only case
        file_ = root_ / "Quillop" / "Quillop.conf";
        fs::create_directories(file_.parent_path());
        put(file_, joined(kValidLines));
    }
    void TearDown() override {
        fs::permissions(file_.parent_path(), fs::perms::owner_all, fs::perm_options::add);
        fs::remove_all(root_);
    }
    fs::path root_, file_;
};

std::string trimmedText(std::string s) {
    s.erase(0, s.find_first_not_of(" \t"));
    s.erase(s.find_last_not_of(" \t") + 1);
    return s;
}

// Random damage to a valid file (bytes changed, added or removed in a few lines, garbage
// lines put in): every entry whose line is untouched is still read, the best score among
// them. An entry is owed only when the file's structure still puts it under its own header:
// its header untouched, no damaged line before it that starts a section, and no damaged
// line that could be the same key. (That a save afterwards keeps every value read is
// checked against QSettings in tests/shell.)
TEST_F(SettingsFileTest, DamageCostsOnlyTheDamagedLines) {
    std::mt19937 rng(20260512);
    auto pick = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    const std::string specials = std::string("\"\\\n\r[]=;@ \t", 11) + std::string("\0\xff\xc3\x80\xe2", 5);
    auto randomByte = [&] { return pick(2) ? specials[pick(static_cast<int>(specials.size()))] : char(rng()); };
    const ini::Document valid = ini::Document::parse(joined(kValidLines));
    int bestIntact = 0;
    for (int tries = 0; tries < 4000; ++tries) {
        std::vector<std::pair<int, std::string>> lines;  // the valid line it was (-1: garbage put in), its text
        for (int k = 0; k < int(kValidLines.size()); ++k) lines.push_back({k, kValidLines[k]});
        for (int d = 1 + pick(3); d > 0; --d) {
            if (pick(4) == 0) {
                std::string garbage;
                for (int n = 1 + pick(8); n > 0; --n) garbage += randomByte();
                lines.insert(lines.begin() + pick(int(lines.size()) + 1), {-1, garbage});
                continue;
            }
            std::string& line = lines[pick(int(lines.size()))].second;
            for (int m = 1 + pick(3); m > 0; --m) {
                const std::size_t pos = line.empty() ? 0 : rng() % (line.size() + 1);
                switch (pick(6)) {
                case 0: line.insert(pos, 1, randomByte()); break;
                case 1: if (pos < line.size()) line.erase(pos, 1); break;
                case 2: if (pos < line.size()) line[pos] = randomByte(); break;
                case 3: line += pick(2) ? "\\" : "\""; break;
                case 4: line.insert(0, std::string(1 + pick(4), randomByte())); break;
                case 5: if (pick(20) == 0) line.append(ini::kLongestLine, 'x'); break;
                }
            }
        }
        std::string text;
        for (const auto& line : lines) text += line.second + "\n";
        put(file_, text);

        // Which section each line lands in, and every key a damaged line might hold.
        std::vector<std::tuple<std::string, std::string, std::string>> owed;  // section, key, value
        std::map<std::pair<std::string, std::string>, int> keys;
        std::string section, original;
        for (const auto& [from, line] : lines) {
            const bool intact = from >= 0 && line == kValidLines[from];
            if (intact && !line.empty() && line[0] == '[') {
                section = original = line.substr(1, line.size() - 2);
                continue;
            }
            if (from >= 0 && kValidLines[from][0] == '[') original = "(damaged)";
            std::stringstream pieces(line);
            for (std::string piece; std::getline(pieces, piece);) {
                piece = trimmedText(piece);
                if (!intact && !piece.empty() && piece[0] == '[') section = "(broken)";
                if (piece.find('=') == std::string::npos) continue;
                const std::string key = trimmedText(piece.substr(0, piece.find('=')));
                ++keys[{section, key}];
                if (intact && section == original) owed.push_back({section, key, *valid.find(section, key)});
            }
        }
        SettingsFile fresh(file_.string());
        for (const auto& [section, key, value] : owed) {
            if (keys[{section, key}] != 1) continue;
            ASSERT_EQ(fresh.read(section, key, "<missing>"), value) << section << "/" << key << " in\n" << text;
            if (key == "Highscore") {
                ++bestIntact;
                ASSERT_EQ(readHighscore(fresh), 4321.0);
            }
        }
    }
    std::printf("4000 damaged files read; the best score's line was intact in %d and read in all of them\n", bestIntact);
}

// A child process saves a new best score with its holder again and again through the real
// name entry and is killed at random moments: the file is always whole, and the score
// always has its own holder.
TEST_F(SettingsFileTest, KilledMidSaveLeavesTheOldOrTheNewFileNeverATornOne) {
    std::mt19937 rng(7);
    int kills = 0, changed = 0;
    double last = 4321;
    for (; kills < 150; ++kills) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            SettingsFile store(file_.string());
            test::RecordingSound sound;
            test::RecordingHost host;
            ModQuillop mod(sound, host);
            HighscoreEntry entry(mod, store);
            for (double score = readHighscore(store) + 1;; ++score) {
                mod.Score = score;
                entry.Form_Paint();
                entry.SaveHighscore("Player " + std::to_string(static_cast<long>(score)));
                writePlacement(store, "MDI", {static_cast<float>(score), 300, 6000, 7000});  // and a close's worth now and then
                if (store.commit() != "") _exit(3);
            }
        }
        usleep(static_cast<useconds_t>(500 + rng() % 20000));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the child stopped by itself: " << status;
        const std::string text = slurp(file_);
        ASSERT_EQ(text.back(), '\n');
        SettingsFile store(file_.string());
        const double best = readHighscore(store);
        ASSERT_GE(best, last);
        if (best != 4321) {
            ASSERT_EQ(readHighscorer(store), "Player " + std::to_string(static_cast<long>(best))) << text;
            ASSERT_EQ(store.read("MDI", "Top", ""), std::to_string(static_cast<long>(best))) << text;
        }
        ASSERT_EQ(store.read("Help", "Left", ""), "200") << text;
        changed += best != last;
        last = best;
    }
    // Temporary files of killed saves are cleared by a later save once they are old.
    int left = 0;
    const timespec old[2] = {{0, 0}, {time(nullptr) - 3600, 0}};
    for (const auto& entry : fs::directory_iterator(file_.parent_path()))
        if (entry.path() != file_) left += utimensat(AT_FDCWD, entry.path().c_str(), old, 0) == 0;
    SettingsFile store(file_.string());
    store.write("Help", "Top", "1");
    ASSERT_EQ(store.commit(), "");
    EXPECT_EQ(std::distance(fs::directory_iterator(file_.parent_path()), fs::directory_iterator()), 1);
    std::printf("%d kills at random moments during saves (%d after a new save had landed, %d temporary files "
                "left); the best score kept with its holder in every one\n", kills, changed, left);
    EXPECT_GT(changed, kills / 2);
}

// Two copies of the game on one account: the one closed last does not undo the other's
// new best score, though its window places win; a higher score of its own does replace it.
TEST_F(SettingsFileTest, SecondCopyNeverLowersTheBestScore) {
    SettingsFile first(file_.string()), second(file_.string());
    ASSERT_EQ(readHighscore(second), 4321.0);  // both started with the old best
    writeNumber(first, "Gorvane", "Highscore", 9000);
    first.write("Gorvane", "Highscorer", "Ann");
    ASSERT_EQ(first.commit(), "");
    writeNumber(second, "Gorvane", "Highscore", 4321);
    second.write("Gorvane", "Highscorer", "Good \"Name\"; ok");
    writeTwips(second, "MDI", "Top", 750);
    ASSERT_EQ(second.commit(), "");
    SettingsFile after(file_.string());
    EXPECT_EQ(std::make_tuple(readHighscore(after), readHighscorer(after), after.read("MDI", "Top", "")),
              std::make_tuple(9000.0, std::string("Ann"), std::string("750")));
    writeNumber(second, "Gorvane", "Highscore", 9500);
    second.write("Gorvane", "Highscorer", "Bo");
    ASSERT_EQ(second.commit(), "");
    EXPECT_EQ(readHighscorer(after) + " " + after.read("Gorvane", "Highscore", ""), "Bo 9500");
}

// A folder that cannot be written: the save says where and why, the file is untouched,
// and the values wait for the next save. Run unprivileged, as root ignores permissions.
TEST_F(SettingsFileTest, FailedSaveSaysWhyAndKeepsTheValues) {
    fs::permissions(file_.parent_path(), fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
    EXPECT_TRUE(inChild([&] {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) return false;
        SettingsFile store(file_.string());
        writeNumber(store, "Gorvane", "Highscore", 9000);
        const std::string why = store.commit();
        std::fprintf(stderr, "%s\n", why.c_str());
        return why.find(file_.parent_path().string()) != std::string::npos &&
               why.find("Permission denied") != std::string::npos && readHighscore(store) == 9000 &&
               slurp(file_) == joined(kValidLines);
    }));

    // No usable home (none, empty, the root, missing, a file): nothing is written anywhere,
    // the values live in memory.
    EXPECT_TRUE(inChild([&] {
        unsetenv("XDG_CONFIG_HOME");
        std::string why;
        for (const char* bad : {"", "/", "/nonexistent-home", file_.c_str(), static_cast<const char*>(nullptr)}) {
            why.clear();
            bad ? setenv("HOME", bad, 1) : unsetenv("HOME");
            if (settingsFilePath(why) != "" || why == "") return false;
        }
        setenv("HOME", root_.c_str(), 1);
        return settingsFilePath(why) == (root_ / ".config/Quillop/Quillop.conf").string();
    }));
    SettingsFile memory("");
    memory.write("Gorvane", "Highscorer", "Cy");
    EXPECT_EQ(memory.commit(), "");
    EXPECT_EQ(readHighscorer(memory), "Cy");
}

// A settings file of a megabyte (a user's own sections kept in it) is written once at the
// close, quickly; and a symlinked file is written through, the link kept.
TEST_F(SettingsFileTest, LargeFileClosesQuicklyAndSymlinkStays) {
    std::string big = joined(kValidLines) + "[Notes]\n";
    for (int k = 0; big.size() < 1000000; ++k) big += "Note" + std::to_string(k) + "=kept as it was to the byte\n";
    const fs::path real = root_ / "elsewhere" / "real.conf";
    fs::create_directories(real.parent_path());
    put(real, big);
    fs::remove(file_);
    fs::create_symlink("../elsewhere/real.conf", file_);
    double best = 1e9;
    for (int run = 0; run < 5; ++run) {
        SettingsFile store(file_.string());
        ASSERT_EQ(readHighscore(store), 4321.0);
        const auto start = std::chrono::steady_clock::now();
        writePlacement(store, "MDI", {300.0f + run, 300, 6000, 7000});  // what a close writes
        writePlacement(store, "Gorvane", {400, 100, 4000, 4000});
        writeNumber(store, "Gorvane", "Highscore", 4321);
        ASSERT_EQ(store.commit(), "");
        best = std::min(best, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    std::printf("closing with a %zu-byte settings file: %.1f ms (best of 5)\n", big.size(), best);
#ifndef __SANITIZE_ADDRESS__  // the sanitizers' run is several times slower by design
    EXPECT_LT(best, 300.0);  // some 100 ms on a busy shared machine: room for load, not for a slow save
#endif
    EXPECT_TRUE(fs::is_symlink(file_));
    const std::string after = slurp(real);
    EXPECT_NE(after.find("Top=304\n"), std::string::npos);
    EXPECT_EQ(after.size(), big.size());  // one changed digit; the notes untouched
}

}  // namespace
