// Numbers as the player reads them: the score label, the frame's title and the settings
// store all show a Double the way the classic desktop's text conversion did.
#pragma once

#include <string>

namespace quillop {

// Whole values below 1E+15 as plain integers ("0", "3250", "-5"); anything else with up to
// 15 significant digits, in exponent form when very large or small ("12.5", "1E+15", "1.5E-05").
std::string numberText(double value);

// A Single placement for the settings store: up to seven significant digits, a whole
// number of twips without a decimal part.
std::string singleText(float value);

// Reads a stored number: plain decimal text with an optional sign, fraction and exponent.
// Returns false for anything else (empty, junk, NaN, infinite).
bool parseNumber(const std::string& text, double& out);

}  // namespace quillop
