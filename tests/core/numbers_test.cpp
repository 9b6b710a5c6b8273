// The classic number semantics and the text forms of numbers.
#include <gtest/gtest.h>

#include <utility>

#include "game/base/number_text.h"
#include "game/base/numbers.h"

namespace quillop {

TEST(Numbers, OverflowIsAnErrorConversionRoundsHalfToEvenAndTextIsPlainDecimal) {
    Integer i = 32767;
    EXPECT_THROW(++i, IntegerOverflow);
    EXPECT_THROW(Integer(-32769), IntegerOverflow);
    EXPECT_THROW(Byte(256), IntegerOverflow);
    EXPECT_THROW(Byte(-1), IntegerOverflow);
    EXPECT_THROW(CInt(32767.5), IntegerOverflow);
    for (const auto& [x, n] : {std::make_pair(28.5, 28), {29.5, 30}, {-2.5, -2}, {2.5000001, 3}})
        EXPECT_EQ(CInt(x), n) << x;
    EXPECT_EQ(std::make_pair(Int(-0.5), Int(5.999)), std::make_pair(-1.0, 5.0));  // Int is the floor

    // As text: whole values plain, others with fifteen digits and exponents; read back only
    // from plain decimals.
    for (const auto& [x, text] : {std::make_pair(0.0, "0"), {3250, "3250"}, {-5, "-5"}, {12.5, "12.5"},
                                  {1e15, "1E+15"}, {1.5e-5, "1.5E-05"}, {0.1 + 0.2, "0.3"}})
        EXPECT_EQ(numberText(x), text);
    for (const auto& [x, text] : {std::make_pair(7000.0f, "7000"), {0.1f, "0.1"}, {1234.567f, "1234.567"}})
        EXPECT_EQ(singleText(x), text);
    double v = 0;
    for (const auto& [text, value] : {std::make_pair("-12.5", -12.5), {"6000", 6000}}) {
        EXPECT_TRUE(parseNumber(text, v)) << text;
        EXPECT_EQ(v, value);
    }
    for (const char* bad : {"", "abc", "12abc", "nan", "inf", "1,5", " "}) EXPECT_FALSE(parseNumber(bad, v)) << bad;
}

}  // namespace quillop
