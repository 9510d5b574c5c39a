#pragma once

#include <string>
#include <vector>

// The desktop's application database as freedesktop.org describes it: data folders,
// desktop entries and the default handler of mailto links.
namespace zuno::posix {

// $XDG_DATA_HOME, or ~/.local/share when it is unset or not absolute.
std::string xdgDataHome();

// The XDG data folders in lookup order: $XDG_DATA_HOME (or ~/.local/share), then each of
// $XDG_DATA_DIRS (or /usr/local/share:/usr/share). Relative entries are ignored.
std::vector<std::string> xdgDataFolders();

// The file of a desktop entry ("thunderbird.desktop") in the first data folder whose
// "applications" subfolder holds it; empty when none does or the id is not a plain file
// name ending in ".desktop".
std::string findDesktopEntry(const std::string& desktopId);

// The program that the "Exec" key of an entry's [Desktop Entry] group starts: its first
// word, quotes and escapes removed, after an "env" and its VAR=value words. Empty when the
// entry has no such key.
std::string desktopEntryProgram(const std::string& entryText);

// The desktop id of the default handler of mailto links, as `xdg-mime query default
// x-scheme-handler/mailto` answers it; empty when none is set or xdg-mime is missing.
std::string defaultMailtoHandler();

// The program that the default mailto handler's desktop entry starts; empty when no
// handler is set or its entry is missing.
std::string defaultMailtoProgram();

} // namespace zuno::posix
