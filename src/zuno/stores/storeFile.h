#pragma once

#include <zuno/IURI.h>
#include <zuno/P.h>
#include <zuno/String.h>

#include <functional>
#include <string>
#include <vector>

namespace zuno::storeFile {

// The steps of replacing a store file, in order. The new content goes to a temporary file
// in the same folder, which is then renamed over the old file: until the rename the old
// file is untouched, after it the new one is complete.
enum class WriteStep { CreateTemporary, Write, SyncFile, Close, Rename, SyncFolder };

// The steps this platform takes (Windows has no folder to sync).
const std::vector<WriteStep>& writeSteps();

// A seam for tests: the hook is asked before each step, and when it answers true the step
// fails as the operating system would fail it (an I/O error). Null removes the hook.
void setStepHook(std::function<bool(WriteStep)> hook);
// Whether the hook makes `step` fail.
bool stepFails(WriteStep step);

// The whole content of the file at `uri` into `bytes`. False when the file does not exist
// but its folder does (a store not written yet). A folder, a missing folder or drive, or
// any read failure raises CFileError (CFileAccessDeniedError when access is denied), its
// message led by `operation`.
bool read(const P<IURI>& uri, std::string& bytes, const String& operation);

// Replaces the file at `uri` with `bytes` (see WriteStep). A failure raises CFileError, its
// message led by `operation`, and leaves the old file as it was and no temporary file.
void replace(const P<IURI>& uri, const std::string& bytes, const String& operation);

// The errors of both, for the platform code.
[[noreturn]] void throwReadError(const P<IURI>& uri, const String& operation, uint32_t code);
[[noreturn]] void throwWriteError(const P<IURI>& uri, const String& operation, uint32_t code);
[[noreturn]] void throwIsFolder(const P<IURI>& uri, const String& operation);

} // namespace zuno::storeFile
