#pragma once

namespace zuno {

// How CJsonParser reads numbers and how CJsonPrinter writes numbers and strings.
//
// Default: the framework's long-standing rules, which lose precision. A number is
// computed digit by digit and becomes an integer unless its fraction is at least 0.00001
// or its exponent above 1 (1.000001 reads as 1, 5e-1 as 0); doubles print as "%g" (six
// significant digits, so 0.1234567 prints as 0.123457, and infinity as inf, which no
// parser reads back); strings escape only \\ \" \b \f \n \r \t.
//
// Exact: what is written reads back as the same value of the same kind. An integer
// literal (no fraction, no exponent) is a CVariantInt64 when it fits, else a
// CVariantUInt64 when it fits, else the nearest double; a number with a fraction or an
// exponent is the correctly rounded double (independent of the locale). Integers print in
// full; doubles print in the shortest form that reads back as the same double, always with
// a "." or an exponent so that they read back as doubles (1.0, not 1); infinities and NaN
// print as null. Strings escape every control character (\u00XX for those without a short
// escape) and every lone surrogate (\uD800), so the output is valid JSON. The grammar
// accepted is the same in both modes.
enum class JsonMode { Default, Exact };

} // namespace zuno
