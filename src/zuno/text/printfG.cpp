#include "text/printfG.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace zuno {

namespace {

constexpr int Precision = 6;

// Powers of ten that doubles hold exactly.
constexpr double ExactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int MaxExactPower = 22;

size_t exactPrintfG(double value, char* out) {
    return size_t(std::to_chars(out, out + 32, value, std::chars_format::general, Precision).ptr - out);
}

// `magnitude` times 10 to the power `k`, rounded once; false when that cannot be done
// with an exact power of ten.
bool scale(double magnitude, int k, double& scaled) {
    if (k > MaxExactPower || k < -MaxExactPower) return false;
    scaled = k >= 0 ? magnitude * ExactPowers[k] : magnitude / ExactPowers[-k];
    return true;
}

} // namespace

// Fast path: the value is scaled by an exact power of ten into [100000, 1000000) with a
// single rounding, which is off by at most 6e-11; unless the scaled value lies that close
// to a rounding tie, rounding it to an integer gives the six digits printf gives. Ties,
// very large and very small values, zero, infinities and NaN take the exact (slower) path.
size_t printfG(double value, char* out) {
    const double magnitude = std::fabs(value);
    if (!(magnitude >= 1e-300 && magnitude <= 1e300)) return exactPrintfG(value, out);

    // The decimal exponent, estimated from the binary one and then corrected.
    int exponent = int(std::floor((std::ilogb(magnitude) + 1) * 0.30102999566398119521)) - 1;
    double scaled;
    if (!scale(magnitude, Precision - 1 - exponent, scaled)) return exactPrintfG(value, out);
    while (scaled >= 1e6) {
        ++exponent;
        if (!scale(magnitude, Precision - 1 - exponent, scaled)) return exactPrintfG(value, out);
    }
    while (scaled < 1e5) {
        --exponent;
        if (!scale(magnitude, Precision - 1 - exponent, scaled)) return exactPrintfG(value, out);
    }
    uint32_t number = uint32_t(scaled);
    const double fraction = scaled - number;
    if (std::fabs(fraction - 0.5) < 1e-9) return exactPrintfG(value, out);
    if (fraction > 0.5 && ++number == 1000000) {
        number = 100000;
        ++exponent;
    }

    char digits[Precision];
    for (int i = Precision - 1; i >= 0; --i, number /= 10) digits[i] = char('0' + number % 10);
    int count = Precision;
    while (count > 1 && digits[count - 1] == '0') --count;

    char* o = out;
    if (value < 0) *o++ = '-';
    if (exponent < -4 || exponent >= Precision) {
        *o++ = digits[0];
        if (count > 1) {
            *o++ = '.';
            for (int i = 1; i < count; ++i) *o++ = digits[i];
        }
        *o++ = 'e';
        *o++ = exponent < 0 ? '-' : '+';
        const int power = exponent < 0 ? -exponent : exponent;
        if (power >= 100) *o++ = char('0' + power / 100);
        *o++ = char('0' + power / 10 % 10);
        *o++ = char('0' + power % 10);
    } else if (exponent >= 0) {
        for (int i = 0; i <= exponent; ++i) *o++ = i < count ? digits[i] : '0';
        if (count > exponent + 1) {
            *o++ = '.';
            for (int i = exponent + 1; i < count; ++i) *o++ = digits[i];
        }
    } else {
        *o++ = '0';
        *o++ = '.';
        for (int i = exponent + 1; i < 0; ++i) *o++ = '0';
        for (int i = 0; i < count; ++i) *o++ = digits[i];
    }
    return size_t(o - out);
}

} // namespace zuno
