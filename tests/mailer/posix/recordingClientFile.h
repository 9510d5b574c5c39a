#pragma once

#include <string>
#include <vector>

// A file of the Linux stand-in in a test's work folder (see RecordingMailClient.cpp):
// "status" holds the fake client's exit status (a negative one: the signal it kills itself
// with); a "stall" file makes it keep running after writing its process id to "pid"; "record"
// holds the arguments it received; "tool-output" what the tool itself printed.
std::string recordingClientFile(const std::string& workDir, const std::string& name);

// Makes a desktop entry with the Exec line `exec` the default mailto handler of the work
// folder's throw-away HOME, and puts a recording stand-in at `standIn`: a program name (in
// the bin folder first on PATH) or a path below the work folder. "%WORK%" in `exec` stands
// for the work folder.
void installRecordingClient(const std::string& workDir, const std::string& exec, const std::string& standIn);

// The arguments the stand-in received last, after the program name.
std::vector<std::string> recordedArguments(const std::string& workDir);
