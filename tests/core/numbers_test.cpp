// The classic number semantics and the text forms of numbers.
#include <gtest/gtest.h>

#include "game/base/number_text.h"
#include "game/base/numbers.h"

namespace quillop {

TEST(Numbers, OverflowIsAnErrorNeverAWrap) {
    Integer i = 32767;
    EXPECT_THROW(++i, IntegerOverflow);
    EXPECT_THROW(Integer(-32769), IntegerOverflow);
    EXPECT_THROW(Byte(256), IntegerOverflow);
    EXPECT_THROW(Byte(-1), IntegerOverflow);
    EXPECT_THROW(CInt(32767.5), IntegerOverflow);
}

TEST(Numbers, ConversionRoundsHalfToEvenAndIntIsTheFloor) {
    EXPECT_EQ(CInt(28.5), 28);
    EXPECT_EQ(CInt(29.5), 30);
    EXPECT_EQ(CInt(-2.5), -2);
    EXPECT_EQ(CInt(2.5000001), 3);
    EXPECT_EQ(Int(-0.5), -1);
    EXPECT_EQ(Int(5.999), 5);
}

TEST(NumberText, WholeValuesPlainOthersWithFifteenDigitsAndExponents) {
    EXPECT_EQ(numberText(0), "0");
    EXPECT_EQ(numberText(3250), "3250");
    EXPECT_EQ(numberText(-5), "-5");
    EXPECT_EQ(numberText(12.5), "12.5");
    EXPECT_EQ(numberText(1e15), "1E+15");
    EXPECT_EQ(numberText(1.5e-5), "1.5E-05");
    EXPECT_EQ(numberText(0.1 + 0.2), "0.3");
    EXPECT_EQ(singleText(7000.0f), "7000");
    EXPECT_EQ(singleText(0.1f), "0.1");
    EXPECT_EQ(singleText(1234.567f), "1234.567");
}

TEST(NumberText, ReadingAcceptsPlainDecimalsOnly) {
    double v = 0;
    EXPECT_TRUE(parseNumber("-12.5", v));
    EXPECT_EQ(v, -12.5);
    EXPECT_TRUE(parseNumber("6000", v));
    EXPECT_EQ(v, 6000);
    for (const char* bad : {"", "abc", "12abc", "nan", "inf", "1,5", " "}) EXPECT_FALSE(parseNumber(bad, v)) << bad;
}

}  // namespace quillop
