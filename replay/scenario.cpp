#include "replay/scenario.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <iterator>
#include <sstream>

#include "game/base/utf8_text.h"

namespace quillop::replay {
namespace {

[[noreturn]] void fail(int line, const std::string& what) {
    // The scenario's own words may hold any bytes; a terminal must not receive them raw.
    throw ScenarioError{"line " + std::to_string(line) + ": " + visibleText(what)};
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::vector<std::string> splitWords(const std::string& s) {
    std::vector<std::string> words;
    std::size_t k = 0;
    while (k < s.size()) {
        while (k < s.size() && isBlank(s[k])) ++k;
        const std::size_t start = k;
        while (k < s.size() && !isBlank(s[k])) ++k;
        if (k > start) words.push_back(s.substr(start, k - start));
    }
    return words;
}

// [+-]?digits[.digits] or [+-]?.digits; nothing else (no exponent, no inf, no nan).
bool wellFormed(const std::string& w) {
    std::size_t k = 0;
    if (k < w.size() && (w[k] == '+' || w[k] == '-')) ++k;
    std::size_t intDigits = 0;
    while (k < w.size() && w[k] >= '0' && w[k] <= '9') ++k, ++intDigits;
    if (k == w.size()) return intDigits > 0;
    if (w[k] != '.') return false;
    ++k;
    std::size_t fracDigits = 0;
    while (k < w.size() && w[k] >= '0' && w[k] <= '9') ++k, ++fracDigits;
    return k == w.size() && fracDigits > 0;
}

double number(int line, const std::string& w) {
    if (!wellFormed(w)) fail(line, "'" + w + "' is not a number");
    const char* first = w.c_str();
    if (*first == '+') ++first;  // from_chars takes no plus sign
    double value = 0;
    const auto result = std::from_chars(first, w.c_str() + w.size(), value);
    if (result.ec != std::errc() || !std::isfinite(value)) fail(line, "number '" + w + "' is out of range");
    return value;
}

void expectCount(int line, const std::string& cmd, const std::vector<std::string>& args, std::size_t n,
                 const char* what) {
    if (args.size() == n) return;
    std::string message = cmd + (n == 0 ? " takes no arguments" : std::string(" takes ") + what);
    message += ", got " + std::to_string(args.size()) + (args.size() == 1 ? " argument" : " arguments");
    fail(line, message);
}

// A whole count: 3.0 is 3; up to 2^53 so every value is exact.
std::uint64_t wholeNumber(int line, const std::string& cmd, const std::string& w, double max) {
    const double v = number(line, w);
    if (v < 0 || v != std::floor(v) || v > max)
        fail(line, cmd + " needs a whole number from 0 to " + std::to_string(static_cast<std::uint64_t>(max)) +
                       ", got '" + w + "'");
    return static_cast<std::uint64_t>(v);
}

void positivePair(int line, const std::string& cmd, const std::vector<std::string>& args, double& w, double& h) {
    expectCount(line, cmd, args, 2, "2 numbers (W H)");
    w = number(line, args[0]);
    h = number(line, args[1]);
    if (!(w > 0 && h > 0)) fail(line, cmd + " needs W and H greater than 0");
}

}  // namespace

bool Scenario::wantsSnapshots() const {
    for (const Command& c : commands)
        if (c.op == Op::Snapshot) return true;
    return false;
}

namespace {

// The command word and what follows it, from `from` on (leading blanks skipped).
void splitCommand(const std::string& raw, std::size_t from, std::string& cmd, std::string& rest) {
    std::size_t k = from;
    while (k < raw.size() && isBlank(raw[k])) ++k;
    std::size_t wordEnd = k;
    while (wordEnd < raw.size() && !isBlank(raw[wordEnd])) ++wordEnd;
    cmd = raw.substr(k, wordEnd - k);
    rest = raw.substr(wordEnd);
}

bool isSetUp(const std::string& cmd) {
    return cmd == "size" || cmd == "seed" || cmd == "highscore" || cmd == "highscorer";
}

void parseSetUp(int line, const std::string& cmd, const std::string& rest, Scenario& scenario) {
    const std::string verbatim = rest.empty() ? std::string() : rest.substr(1);
    const std::vector<std::string> args = splitWords(rest);
    if (cmd == "size") {
        positivePair(line, cmd, args, scenario.width, scenario.height);
    } else if (cmd == "seed") {
        expectCount(line, cmd, args, 1, "1 number");
        scenario.seed = static_cast<std::uint32_t>(wholeNumber(line, cmd, args[0], 16777215));
    } else if (cmd == "highscore") {
        expectCount(line, cmd, args, 1, "1 number");
        number(line, args[0]);
        scenario.highscoreText = args[0];
    } else {
        scenario.highscorer = verbatim;
    }
}

Op yesNo(int line, const std::string& cmd, const std::vector<std::string>& args, Op yes, Op no) {
    if (args.size() != 1 || (args[0] != "yes" && args[0] != "no")) fail(line, cmd + " needs exactly 'yes' or 'no'");
    return args[0] == "yes" ? yes : no;
}

Command parseCommand(int line, const std::string& cmd, const std::string& rest) {
    // Text arguments: everything after the one blank that ends the command word.
    const std::string verbatim = rest.empty() ? std::string() : rest.substr(1);
    const std::vector<std::string> args = splitWords(rest);
    Command c{Op::Play, line, 0, 0, 0, {}, 0};
    if (cmd == "name") {
        c.op = Op::Name;
        c.text = verbatim;
    } else if (cmd == "move" || cmd == "press") {
        c.op = cmd == "move" ? Op::Move : Op::Press;
        expectCount(line, cmd, args, 2, "2 numbers (X Y)");
        c.x = number(line, args[0]);
        c.y = number(line, args[1]);
    } else if (cmd == "play" || cmd == "drop" || cmd == "help" || cmd == "closehelp" || cmd == "minimize" ||
               cmd == "restore") {
        expectCount(line, cmd, args, 0, "");
        c.op = cmd == "play"        ? Op::Play
               : cmd == "drop"      ? Op::Drop
               : cmd == "help"      ? Op::Help
               : cmd == "closehelp" ? Op::CloseHelp
               : cmd == "minimize"  ? Op::Minimize
                                    : Op::Restore;
    } else if (cmd == "newgame") {
        if (args.size() == 1 && args[0] == "ask") {
            c.op = Op::NewGameAsk;
        } else {
            if (args.size() != 1 || (args[0] != "yes" && args[0] != "no"))
                fail(line, "newgame needs exactly 'yes', 'no' or 'ask'");
            c.op = args[0] == "yes" ? Op::NewGameYes : Op::NewGameNo;
        }
    } else if (cmd == "answer") {
        c.op = yesNo(line, cmd, args, Op::AnswerYes, Op::AnswerNo);
    } else if (cmd == "resize") {
        c.op = Op::Resize;
        positivePair(line, cmd, args, c.x, c.y);
    } else if (cmd == "tick") {
        c.op = Op::Tick;
        expectCount(line, cmd, args, 1, "1 number");
        c.count = wholeNumber(line, cmd, args[0], 9007199254740992.0);
    } else if (cmd == "expect") {
        c.op = Op::Expect;
        expectCount(line, cmd, args, 3, "3 numbers (TICKS SCORE DRAWS)");
        c.count = wholeNumber(line, cmd, args[0], 9007199254740992.0);
        c.x = number(line, args[1]);
        c.y = static_cast<double>(wholeNumber(line, cmd, args[2], 9007199254740992.0));
    } else if (cmd == "snapshot") {
        c.op = Op::Snapshot;
        const std::size_t first = rest.find_first_not_of(" \t");
        if (first == std::string::npos) fail(line, "snapshot needs a file name");
        c.text = rest.substr(first, rest.find_last_not_of(" \t") - first + 1);
        // The file system would take the name only up to the NUL: another file than asked.
        if (c.text.find('\0') != std::string::npos) fail(line, "snapshot file name '" + c.text + "' holds a NUL byte");
    } else {
        fail(line, "unknown command '" + cmd + "'");
    }
    return c;
}

// What can happen while the game waits: the player's input and the window's commands, never
// a timer event (a tick does not start inside another) nor a question left open.
bool canComeDuringWait(Op op) {
    return op != Op::Tick && op != Op::Snapshot && op != Op::NewGameAsk && op != Op::AnswerYes &&
           op != Op::AnswerNo && op != Op::Expect;
}

// `during P COMMAND ...`
Command parseDuring(int line, const std::string& raw, std::size_t from, int lastWait) {
    std::string pass, rest;
    splitCommand(raw, from, pass, rest);
    if (pass.empty()) fail(line, "during needs a wait number and a command");
    const int wait = static_cast<int>(wholeNumber(line, "during", pass, 1000000));
    if (wait < 1) fail(line, "during needs a wait number from 1");
    if (wait < lastWait) fail(line, "during " + pass + " comes after during " + std::to_string(lastWait));
    std::string cmd, args;
    splitCommand(rest, 0, cmd, args);
    if (cmd.empty()) fail(line, "during needs a command after the wait number");
    if (cmd == "during" || isSetUp(cmd)) fail(line, cmd + " cannot come during a wait");
    Command c = parseCommand(line, cmd, args);
    if (!canComeDuringWait(c.op)) fail(line, cmd + " cannot come during a wait");
    c.wait = wait;
    return c;
}

}  // namespace

Scenario parseScenario(const std::string& text) {
    Scenario scenario;
    bool started = false;  // a command other than set-up has been seen
    int lastWait = 0;      // of the `during` lines just before
    int line = 0;
    std::size_t pos = 0;
    while (pos < text.size()) {
        std::size_t end = text.find('\n', pos);
        if (end == std::string::npos) end = text.size();
        std::string raw = text.substr(pos, end - pos);
        pos = end + 1;
        ++line;
        if (!raw.empty() && raw.back() == '\r') raw.pop_back();

        std::string cmd, rest;
        splitCommand(raw, 0, cmd, rest);
        if (cmd.empty() || cmd[0] == '#') continue;
        if (isSetUp(cmd)) {
            if (started) fail(line, cmd + " is a set-up command and must come before every other command");
            parseSetUp(line, cmd, rest, scenario);
            continue;
        }
        started = true;
        if (cmd == "during") {
            scenario.commands.push_back(parseDuring(line, rest, 0, lastWait));
            lastWait = scenario.commands.back().wait;
            continue;
        }
        lastWait = 0;
        scenario.commands.push_back(parseCommand(line, cmd, rest));
    }
    return scenario;
}

std::string readScenarioFile(const std::string& path) {
    if (path == "-") {
        std::ostringstream all;
        all << std::cin.rdbuf();
        if (std::cin.bad()) throw ScenarioError{"cannot read scenario -: read error on standard input"};
        return all.str();
    }
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) throw ScenarioError{"cannot read scenario " + visibleText(path) + ": " + std::strerror(errno)};
    std::string text;
    char buffer[65536];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) text.append(buffer, n);
    const bool failed = std::ferror(f);
    const int error = errno;
    std::fclose(f);
    if (failed) throw ScenarioError{"cannot read scenario " + visibleText(path) + ": " + std::strerror(error)};
    return text;
}

}  // namespace quillop::replay
