#include "platform/files/ini_text.h"

#include <cstdint>

#include "game/base/utf8_text.h"

namespace quillop::ini {
namespace {

// Entries under a header we cannot read belong to no section we know: attributing them to
// the section before would let them override its entries.
const std::string kNoSection = "\x01";
constexpr std::size_t kShownOfUnreadable = 200;

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view trimmed(std::string_view s) {
    while (!s.empty() && isBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back())) s.remove_suffix(1);
    return s;
}

void appendHex(std::string& out, unsigned value) {
    const char* digits = "0123456789abcdef";
    std::string hex;
    do hex.insert(hex.begin(), digits[value % 16]), value /= 16;
    while (value);
    out += hex;
}

bool isHexDigit(char32_t c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
int hexValue(char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; }

// Valid UTF-8 with no control byte but the tab: anything else is no line we wrote or a
// person typed, and a QSettings reader may read it differently from us.
bool isCleanText(std::string_view s) {
    char32_t cp = 0;
    for (std::size_t i = 0; i < s.size();) {
        const auto byte = static_cast<unsigned char>(s[i]);
        if (byte >= 0x20 && byte < 0x80) {
            ++i;
            continue;
        }
        const std::size_t n = utf8SequenceAt(s, i, cp);
        if (n == 0 || (cp < 0x20 && cp != '\t')) return false;
        i += n;
    }
    return true;
}

// The unreadable line as it can be shown in a comment: control bytes and bytes that are
// not UTF-8 as \xNN, and cut short.
std::string printable(std::string_view raw) {
    if (raw.size() <= kShownOfUnreadable) return visibleText(raw);
    return visibleText(raw.substr(0, kShownOfUnreadable)) + "...";
}

bool escapeOfOneChar(char c, char32_t& out) {
    switch (c) {
    case 'a': out = '\a'; return true;
    case 'b': out = '\b'; return true;
    case 'f': out = '\f'; return true;
    case 'n': out = '\n'; return true;
    case 'r': out = '\r'; return true;
    case 't': out = '\t'; return true;
    case 'v': out = '\v'; return true;
    case '"': case '\'': case '?': case '\\': out = static_cast<char32_t>(c); return true;
    default: return false;
    }
}

}  // namespace

std::string escapeValue(std::string_view value) {
    std::string out;
    bool needsQuotes = false;
    bool escapeNextIfDigit = false;  // \x and \0 read on through every hex digit after them
    if (!value.empty() && value.front() == '@') out += '@';  // '@' starts a typed value
    char32_t cp = 0;
    for (std::size_t i = 0; i < value.size();) {
        std::size_t n = utf8SequenceAt(value, i, cp);
        if (n == 0) cp = 0xFFFD, n = 1;
        i += n;
        if (cp == ';' || cp == ',' || cp == '=') needsQuotes = true;
        if (escapeNextIfDigit && isHexDigit(cp)) {
            out += "\\x";
            appendHex(out, cp);
            continue;
        }
        escapeNextIfDigit = false;
        switch (cp) {
        case '\a': out += "\\a"; break;
        case '\b': out += "\\b"; break;
        case '\f': out += "\\f"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        case '\v': out += "\\v"; break;
        case '"': case '\\': out += '\\', out += static_cast<char>(cp); break;
        default:
            if (cp < 0x20 || cp == 0x7F) {
                out += "\\x";
                appendHex(out, cp);
                escapeNextIfDigit = true;
            } else {
                appendUtf8(out, cp);
            }
        }
    }
    if (needsQuotes || (!out.empty() && (out.front() == ' ' || out.back() == ' '))) out = '"' + out + '"';
    return out;
}

std::optional<std::string> unescapeValue(std::string_view text) {
    bool plain = text.empty() || text.front() != '@';
    for (std::size_t i = 0; plain && i < text.size(); ++i) plain = text[i] != '"' && text[i] != '\\' && text[i] != ';';
    if (plain) return std::string(text);  // the usual case
    std::string out;
    // Files of older Qt versions escape every character outside ASCII as UTF-16 units, a
    // character beyond the first 65,536 as two of them.
    char32_t highHalf = 0;
    auto flushHalf = [&] {
        if (highHalf) appendUtf8(out, 0xFFFD), highHalf = 0;
    };
    auto putEscaped = [&](char32_t cp) {
        if (cp >= 0xDC00 && cp <= 0xDFFF && highHalf) {
            appendUtf8(out, 0x10000 + ((highHalf - 0xD800) << 10) + (cp - 0xDC00));
            highHalf = 0;
            return;
        }
        flushHalf();
        if (cp >= 0xD800 && cp <= 0xDBFF) highHalf = cp;
        else appendUtf8(out, cp >= 0xDC00 && cp <= 0xDFFF ? 0xFFFD : cp);
    };
    bool inQuotes = false;
    char32_t cp = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '"') {
            inQuotes = !inQuotes;
        } else if (c == ';' && !inQuotes) {
            break;  // the rest of the line is a comment
        } else if (c != '\\') {
            flushHalf();
            out += c;
        } else if (++i == text.size()) {
            return std::nullopt;  // a trailing backslash would join the next line
        } else if (escapeOfOneChar(text[i], cp)) {
            putEscaped(cp);
        } else if (text[i] == 'x' || (text[i] >= '0' && text[i] <= '7')) {
            const bool hex = text[i] == 'x';
            std::size_t k = hex ? i + 1 : i;
            cp = 0;
            for (; k < text.size() && (hex ? isHexDigit(text[k]) : text[k] >= '0' && text[k] <= '7'); ++k) {
                cp = cp * (hex ? 16 : 8) + hexValue(text[k]);
                if (cp > 0x10FFFF) return std::nullopt;
            }
            if (k == i + 1 && hex) return std::nullopt;
            putEscaped(cp);
            i = k - 1;
        } else {
            flushHalf();
            out += '\\';  // not an escape: the backslash is the user's own
            out += text[i];
        }
    }
    flushHalf();
    if (inQuotes) return std::nullopt;
    if (out.rfind("@@", 0) == 0) return out.substr(1);
    if (!out.empty() && out.front() == '@') return std::nullopt;  // a typed value, not text
    return out;
}

Document::Line Document::parseLine(std::string_view raw, const std::string& section) {
    Line line{Kind::Unreadable, std::string(raw), section, {}, {}};
    if (raw.size() > kLongestLine || !isCleanText(raw)) return line;
    const std::string_view t = trimmed(raw);
    if (t.empty() || t.front() == ';') {
        line.kind = Kind::Other;
    } else if (t.front() == '[') {
        // A quote, backslash or semicolon in a header would make QSettings read on past
        // the line's end.
        const std::string_view name = t.size() >= 2 ? t.substr(1, t.size() - 2) : std::string_view();
        if (t.size() >= 2 && t.back() == ']' && name.find_first_of("\"\\;[]") == std::string_view::npos) {
            line.kind = Kind::Section;
            line.section = std::string(name);
        }
    } else if (const std::size_t equals = t.find('='); equals != std::string_view::npos) {
        const std::string_view key = trimmed(t.substr(0, equals));
        std::optional<std::string> value = unescapeValue(trimmed(t.substr(equals + 1)));
        if (!key.empty() && key.find_first_of("\"\\;") == std::string_view::npos && value &&
            section != kNoSection) {
            line.kind = Kind::Entry;
            line.raw.clear();  // written from its key and value
            line.key = std::string(key);
            line.value = std::move(*value);
        }
    }
    return line;
}

Document Document::parse(std::string_view text) {
    Document doc;
    if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.remove_prefix(3);  // a byte-order mark
    std::string section;
    std::size_t count = 1;
    for (const char c : text) count += c == '\n';
    doc.lines_.reserve(count);
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view raw = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (!raw.empty() && raw.back() == '\r') raw.remove_suffix(1);
        Line line = parseLine(raw, section);
        if (line.kind == Kind::Section) section = line.section;
        else if (line.kind == Kind::Unreadable && !trimmed(raw).empty() && trimmed(raw).front() == '[')
            section = kNoSection;
        doc.lines_.push_back(std::move(line));
    }
    return doc;
}

const std::string* Document::find(std::string_view section, std::string_view key) const {
    for (auto it = lines_.rbegin(); it != lines_.rend(); ++it)
        if (it->kind == Kind::Entry && it->section == section && it->key == key) return &it->value;
    return nullptr;
}

void Document::set(const std::string& section, const std::string& key, const std::string& value) {
    bool found = false;
    std::size_t endOfSection = lines_.size() + 1;  // none yet
    for (std::size_t k = 0; k < lines_.size(); ++k) {
        Line& line = lines_[k];
        if (line.section != section || line.kind == Kind::Unreadable) continue;
        if (line.kind == Kind::Section || line.kind == Kind::Entry) endOfSection = k + 1;
        if (line.kind == Kind::Entry && line.key == key) {
            line.value = value;
            found = true;
        }
    }
    if (found) return;
    Line line{Kind::Entry, {}, section, key, value};
    if (endOfSection <= lines_.size()) {
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(endOfSection), std::move(line));
        return;
    }
    if (!lines_.empty() && (lines_.back().kind != Kind::Other || !trimmed(lines_.back().raw).empty()))
        lines_.push_back({Kind::Other, "", section, {}, {}});
    lines_.push_back({Kind::Section, '[' + section + ']', section, {}, {}});
    lines_.push_back(std::move(line));
}

std::string Document::text() const {
    std::string out;
    out.reserve(lines_.size() * 32);
    for (const Line& line : lines_) {
        if (line.kind == Kind::Unreadable) out += "; unreadable, kept as a comment: " + printable(line.raw);
        // In the form QSettings writes: a hand-written value QSettings reads differently
        // (spaces after a quote, a backslash before a letter, a comma) reads the same in both.
        else if (line.kind == Kind::Entry) out += line.key + '=' + escapeValue(line.value);
        else out += line.raw;
        out += '\n';
    }
    return out;
}

}  // namespace quillop::ini
