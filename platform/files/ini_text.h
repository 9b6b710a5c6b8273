// The settings file's text: an INI file read one line at a time, so that whatever one line
// holds (a stray quote, a trailing backslash, bytes that are not UTF-8, control bytes, a line
// of a megabyte) only that line is unreadable and every other entry is kept. Values are
// written the way Qt's QSettings writes them, so files from earlier versions read the same
// and the files we write read back the same in QSettings or any INI reader.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillop::ini {

// Longer lines are unreadable; no value the game writes comes near it.
constexpr std::size_t kLongestLine = 256 * 1024;

// A value's text as written after "Key=": backslash escapes for quotes, backslashes and
// control characters, in double quotes when it holds ; , = or starts or ends with a space.
std::string escapeValue(std::string_view value);
// The value written after "Key=" (surrounding blanks already trimmed), or nothing when the
// text cannot be read (an unbalanced quote, a trailing backslash, a typed @ value).
std::optional<std::string> unescapeValue(std::string_view text);

class Document {
public:
    static Document parse(std::string_view text);

    // The last readable entry of that section and key.
    const std::string* find(std::string_view section, std::string_view key) const;
    // Replaces the entry's value in place, or adds it at the end of its section (the
    // section at the end of the file when there is none).
    void set(const std::string& section, const std::string& key, const std::string& value);
    // The file's text: entries as QSettings writes them, comments and blank lines as they
    // were, unreadable lines kept as comments with their bytes made printable, so that a
    // reader that stops at a stray quote never meets one.
    std::string text() const;

private:
    enum class Kind { Other, Section, Entry, Unreadable };
    struct Line {
        Kind kind;
        std::string raw;
        std::string section;  // the section this line belongs to (its name, for a header)
        std::string key, value;
    };
    static Line parseLine(std::string_view raw, const std::string& section);

    std::vector<Line> lines_;
};

}  // namespace quillop::ini
