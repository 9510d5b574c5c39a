#pragma once

#include <zuno/String.h>

#include <cstdint>
#include <optional>

namespace zuno::valueText {

// Numbers as the stores write them in text: integers in full, doubles in the shortest form
// that reads back as the same double ("0.1", "1e-300", "-0", "inf", "nan").
String fromInt64(int64_t value);
String fromUInt64(uint64_t value);
String fromDouble(double value);
String fromBoolean(bool value);

// The whole text as a number, or nothing (no blanks, no trailing characters, nothing out
// of range). Doubles are rounded correctly; "inf", "-inf" and "nan" are read too.
std::optional<int64_t> toInt64(const String& text);
std::optional<uint64_t> toUInt64(const String& text);
std::optional<double> toDouble(const String& text);

} // namespace zuno::valueText
