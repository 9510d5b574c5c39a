#pragma once

#include <string>

// A file of the Linux stand-in in a test's work folder (see RecordingMailClient.cpp):
// "status" holds the fake client's exit status (a negative one: the signal it kills itself
// with); a "stall" file makes it keep running after writing its process id to "pid"; "record"
// holds the arguments it received; "tool-output" what the tool itself printed.
std::string recordingClientFile(const std::string& workDir, const std::string& name);
