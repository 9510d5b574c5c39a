#pragma once

#include "mail/posix/xdgDesktop.h"

#include <optional>
#include <string>
#include <vector>

// The command line of a desktop entry's Exec key, read the way desktops read it
// says: blanks separate words, double quotes group them (a backslash protects '"', '`',
// '$' and '\' inside), and field codes stand for what the launcher fills in.
namespace zuno::posix {

// An Exec line cut where the mail goes.
struct ExecCommand {
    std::vector<std::string> before;  // the words up to the first %u, %U, %f or %F (all of them without one)
    std::vector<std::string> after;   // the words after it
    // The program's name, or the application id behind a Flatpak or Snap launcher; it tells
    // the client's family. "env VAR=value ..." is looked through.
    std::string client;

    // `before`, then `arguments`, then `after`.
    std::vector<std::string> commandLine(const std::vector<std::string>& arguments) const;
};

// The words of an Exec value, quotes and their escapes removed; nothing when a quote is
// left open.
std::optional<std::vector<std::string>> execWords(const std::string& exec);

// The program name or application id of a command's words (see ExecCommand::client).
std::string execClient(const std::vector<std::string>& words);

// The entry's Exec line with its field codes filled in: %i becomes "--icon" and the icon,
// %c the name, %k the entry's file, %% a '%'; the deprecated codes and Flatpak's file
// forwarding marks ("@@u", "@@") are dropped. Nothing when the line cannot be read or
// names no program.
std::optional<ExecCommand> parseExec(const DesktopEntry& entry);

} // namespace zuno::posix
