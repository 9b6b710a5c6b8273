#include "game/base/number_text.h"

#include <charconv>
#include <cmath>

namespace quillop {
namespace {

// printf's %g already switches to exponent form where the classic conversion did (below
// 1E-04 and from 1E+15); only the exponent's letter differs.
std::string formatG(double value, int digits) {
    if (value == 0) return "0";  // also turns -0 into "0"
    // to_chars, unlike printf, ignores the user's locale: the store and the trace always use
    // a point, whatever LC_NUMERIC the toolkit set up.
    char buffer[40];
    auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits);
    std::string text(buffer, result.ptr);
    for (char& c : text)
        if (c == 'e') c = 'E';
    return text;
}

}  // namespace

std::string numberText(double value) { return formatG(value, 15); }

std::string singleText(float value) { return formatG(static_cast<double>(value), 7); }

bool parseNumber(const std::string& text, double& out) {
    std::size_t begin = text.find_first_not_of(" \t");
    std::size_t end = text.find_last_not_of(" \t");
    if (begin == std::string::npos) return false;
    const std::string body = text.substr(begin, end - begin + 1);
    // Only plain decimal forms: the library parser would also take "inf" and "nan".
    bool digit = false;
    for (char c : body) {
        if (c >= '0' && c <= '9') digit = true;
        else if (c != '+' && c != '-' && c != '.' && c != 'e' && c != 'E') return false;
    }
    if (!digit) return false;
    const char* first = body.c_str();
    if (*first == '+') ++first;  // from_chars takes no plus sign
    double value = 0;
    auto result = std::from_chars(first, body.c_str() + body.size(), value);
    if (result.ec != std::errc() || result.ptr != body.c_str() + body.size() || !std::isfinite(value))
        return false;
    out = value;
    return true;
}

}  // namespace quillop
