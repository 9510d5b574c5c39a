#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

// What only the Linux hand-off shows, read from and written to the recording stand-in's
// files in a test's work folder (see RecordingMailClient.cpp).
namespace recordingClient {

// The folder below the work folder that holds the stand-in's home, programs and records.
std::string folder(const std::string& workDir);

// The exact argument vector the stand-in (the fake thunderbird or xdg-email) received.
std::vector<std::string> arguments(const std::string& workDir);

// Whether the mail client's own program was started directly (for a client that must be
// reached through xdg-email).
bool otherClientStartedDirectly(const std::string& workDir);

// Makes the stand-in end with this exit status instead of the chosen Simple MAPI result;
// a negative value makes it kill itself with that signal.
void setExitStatus(const std::string& workDir, int status);

// Makes the stand-in keep running, as a client that was not running yet does.
void makeStall(const std::string& workDir);

// The process id of the stalled stand-in, once it has started; 0 when it never does.
pid_t stalledClient(const std::string& workDir);

// What the tool itself wrote to its standard output and error during the last runMailer.
std::string toolOutput(const std::string& workDir);

} // namespace recordingClient
