#pragma once

// Small operating-system services that the portable code needs; each platform folder
// implements them.
namespace zuno::platform {

// Breaks into a debugger when one is attached; does nothing otherwise.
void breakIntoDebugger();
void sleepMilliseconds(unsigned milliseconds);

} // namespace zuno::platform
