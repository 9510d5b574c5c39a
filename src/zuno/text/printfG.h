#pragma once

#include <cstddef>

namespace zuno {

// Writes `value` as printf's "%g" does in the C locale (six significant digits, trailing
// zeros dropped, exponents of at least two digits) into `out`, which must hold 32
// characters; returns the length. Does not depend on the locale or on the C library.
size_t printfG(double value, char* out);

} // namespace zuno
