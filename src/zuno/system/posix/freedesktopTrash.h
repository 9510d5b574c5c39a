#pragma once

#include <string>

// The user's home trash as freedesktop.org desktops lay it out: $XDG_DATA_HOME/Trash
// (~/.local/share/Trash), whose "files" folder holds the trashed files and whose "info"
// folder holds one <name>.trashinfo per file with its original path and deletion time.
namespace zuno::posix {

// The home trash folder.
std::string homeTrashFolder();

// Moves the file (or folder) at an absolute path into the home trash, under its own name or,
// when that is taken, "name.2.ext", "name.3.ext" and so on. A file on another file system
// is copied and then removed. Answers 0, ENOENT when there is no such file, or the errno
// value of the failure; a failure leaves the file where it was.
int moveToTrash(const std::string& path);

} // namespace zuno::posix
