#pragma once

#include <string>

// Small Unicode helpers shared by the codecs.
namespace zuno::unicode {

constexpr char32_t Replacement = 0xFFFD;

inline bool isSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

// Appends one code unit's bytes in the machine's byte order.
template <class Unit>
void appendUnit(std::string& out, Unit unit) {
    out.append(reinterpret_cast<const char*>(&unit), sizeof unit);
}

} // namespace zuno::unicode
