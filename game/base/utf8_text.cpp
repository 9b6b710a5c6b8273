#include "game/base/utf8_text.h"

#include <cstdio>

namespace quillop {

std::size_t utf8SequenceAt(std::string_view s, std::size_t at, char32_t& cp) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(s[at + k]); };
    const unsigned char lead = byte(0);
    std::size_t n = 0;
    if (lead < 0x80) return cp = lead, 1;
    if (lead >= 0xC2 && lead <= 0xDF) n = 2, cp = lead & 0x1F;
    else if (lead >= 0xE0 && lead <= 0xEF) n = 3, cp = lead & 0x0F;
    else if (lead >= 0xF0 && lead <= 0xF4) n = 4, cp = lead & 0x07;
    else return 0;
    if (at + n > s.size()) return 0;
    for (std::size_t k = 1; k < n; ++k) {
        if ((byte(k) & 0xC0) != 0x80) return 0;
        cp = (cp << 6) | (byte(k) & 0x3F);
    }
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    if (cp < kLeast[n] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
    return n;
}

void appendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

std::string visibleText(std::string_view text) {
    std::string out;
    char32_t cp = 0;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t n = utf8SequenceAt(text, i, cp);
        if (n == 0 || cp < 0x20 || cp == 0x7F) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02X", static_cast<unsigned char>(text[i]));
            out += hex;
            ++i;
        } else {
            out.append(text.substr(i, n));
            i += n;
        }
    }
    return out;
}

}  // namespace quillop
