// Text from outside (a settings file, a scenario) is bytes that may not be UTF-8; these read
// it one character at a time and show what cannot be shown as it is.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillop {

// The length of the UTF-8 sequence starting at text[at] and its code point, or 0 when the
// bytes there are not valid UTF-8 (overlong forms and surrogates included).
std::size_t utf8SequenceAt(std::string_view text, std::size_t at, char32_t& codePoint);

void appendUtf8(std::string& out, char32_t codePoint);

// For a message: control bytes and bytes that are not UTF-8 as \xNN, the rest as it is.
std::string visibleText(std::string_view text);

}  // namespace quillop
