// The classic desktop's number types, kept exact: a 16-bit Integer whose overflow is an
// error (never a wrap), an unsigned 8-bit Byte, a 16-bit Boolean whose True is -1, and the
// two float conversions the rules use (round half to even, and Int() as floor).
#pragma once

#include <cmath>
#include <cstdint>
#include <stdexcept>

namespace quillop {

using Single = float;
using Double = double;

// Raised where the original would stop with its overflow error. The game's counters are
// meant to stay in range, so reaching this is a bug, not a game event.
struct IntegerOverflow : std::overflow_error {
    using std::overflow_error::overflow_error;
};

class Integer {
public:
    constexpr Integer() = default;
    constexpr Integer(int value) : v_(check(value)) {}  // NOLINT: assignment from sums is the point
    Integer(double) = delete;                            // use CInt: the rounding must be explicit
    Integer(float) = delete;
    constexpr operator int() const { return v_; }        // NOLINT
    Integer& operator++() { return *this = Integer(v_ + 1); }
    Integer& operator+=(int d) { return *this = Integer(v_ + d); }

private:
    static constexpr std::int16_t check(long value) {
        if (value < -32768 || value > 32767) throw IntegerOverflow("Integer overflow");
        return static_cast<std::int16_t>(value);
    }
    std::int16_t v_ = 0;
};

class Byte {
public:
    constexpr Byte() = default;
    constexpr Byte(int value) : v_(check(value)) {}  // NOLINT
    Byte(double) = delete;
    constexpr operator int() const { return v_; }    // NOLINT

private:
    static constexpr std::uint8_t check(long value) {
        if (value < 0 || value > 255) throw IntegerOverflow("Byte overflow");
        return static_cast<std::uint8_t>(value);
    }
    std::uint8_t v_ = 0;
};

// A Boolean is a plain 16-bit value: "is True" compares with -1 exactly, "is not False"
// with 0, and the rules keep that distinction where they make it.
using Boolean = std::int16_t;
constexpr Boolean kTrue = -1;
constexpr Boolean kFalse = 0;
constexpr Boolean toBoolean(bool b) { return b ? kTrue : kFalse; }

// Float to Integer: round half to even, overflow is an error.
inline Integer CInt(double x) {
    const double r = std::nearbyint(x);  // default rounding mode is to nearest, ties to even
    if (!(r >= -32768.0 && r <= 32767.0)) throw IntegerOverflow("Integer overflow");
    return Integer(static_cast<int>(r));
}

// Int(x): the largest whole number not above x, still a floating value.
inline double Int(double x) { return std::floor(x); }

// A sum "rounded" before a comparison is rounded to a Single first.
inline float rounded(double x) { return static_cast<float>(x); }

}  // namespace quillop
