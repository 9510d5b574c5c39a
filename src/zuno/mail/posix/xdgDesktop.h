#pragma once

#include <optional>
#include <string>
#include <vector>

// The desktop's application database as freedesktop.org describes it (Base Directory,
// Desktop Entry and MIME Applications Associations): data and config folders, desktop
// entries and the default handler of mailto links. Nothing here starts a program.
namespace zuno::posix {

// $XDG_DATA_HOME, or ~/.local/share when it is unset or not absolute.
std::string xdgDataHome();
// The XDG data folders in lookup order: $XDG_DATA_HOME (or ~/.local/share), then each of
// $XDG_DATA_DIRS (or /usr/local/share:/usr/share). Relative entries are ignored.
std::vector<std::string> xdgDataFolders();
// The XDG config folders in lookup order: $XDG_CONFIG_HOME (or ~/.config), then each of
// $XDG_CONFIG_DIRS (or /etc/xdg). Relative entries are ignored.
std::vector<std::string> xdgConfigFolders();

// The mimeapps.list files to consult, most important first: in each config folder, then
// in each data folder's "applications", the lists of the current desktops
// ($XDG_CURRENT_DESKTOP, lower case, "kde-mimeapps.list") before the plain "mimeapps.list".
std::vector<std::string> mimeAppsLists();

// The raw value of `key` in `group` of a desktop-entry style text (surrounding blanks
// removed, escapes kept); nothing when the group or key is missing.
std::optional<std::string> groupValue(const std::string& text, const std::string& group, const std::string& key);

// A value with the escapes of the desktop-entry string types decoded (\s \n \t \r \\).
std::string unescapeValue(const std::string& value);

// The file of a desktop entry ("thunderbird.desktop") in the first data folder whose
// "applications" subfolder holds it; empty when none does or the id is not a plain file
// name ending in ".desktop".
std::string findDesktopEntry(const std::string& desktopId);

// A desktop entry as far as starting it goes.
struct DesktopEntry {
    std::string path;  // its file, for the %k field code
    std::string exec;  // the Exec value, string escapes decoded
    std::string name;
    std::string icon;
};

// The installed application of a desktop id: its entry found, readable, not Hidden and
// with an Exec key.
std::optional<DesktopEntry> installedApplication(const std::string& desktopId);

// The default handler of mailto links: the first installed application listed for
// "x-scheme-handler/mailto" under [Default Applications] in the mimeapps.list files (and
// the older defaults.list of the data folders), else under [Added Associations], else in
// the data folders' mimeinfo.cache; handlers under [Removed Associations] are skipped in
// the last two. Nothing when there is none.
std::optional<DesktopEntry> defaultMailtoHandler();

} // namespace zuno::posix
