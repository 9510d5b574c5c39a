#pragma once

#include <zuno/xmlNestingDepth.h>

namespace mailer {

// The mailer file is checked with the framework's scan, as the XML value store is.
using zuno::xmlNestingDepth;

} // namespace mailer
