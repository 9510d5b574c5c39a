#include "stores/storeFile.h"

#include <zuno/CURIError.h>
#include <zuno/IPathes.h>
#include "core/win32/windows.h"

#include <algorithm>
#include <atomic>
#include <string>

namespace zuno::storeFile {

namespace {

std::wstring localPath(const P<IURI>& uri) {
    return getPathes()->uriToPath(uri, false).toStdWString();
}

bool isFolder(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// The folder of a full path, with its separator ("C:\" for "C:\x.xml").
std::wstring folderOf(const std::wstring& path) {
    const size_t separator = path.find_last_of(L"\\/");
    return separator == std::wstring::npos ? std::wstring(L".") : path.substr(0, separator + 1);
}

// A name beside the file that no other writer in this or another process picks.
std::wstring temporaryName(const std::wstring& path) {
    static std::atomic<unsigned> counter{0};
    return path + L"." + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++counter) + L".tmp";
}

// Runs a step unless the test seam makes it fail; answers the error code on failure.
template <class Operation>
DWORD runStep(WriteStep step, Operation operation) {
    if (stepFails(step)) return ERROR_WRITE_FAULT;
    return operation() ? ERROR_SUCCESS : GetLastError();
}

bool writeAll(HANDLE file, const std::string& bytes) {
    size_t written = 0;
    while (written < bytes.size()) {
        const DWORD chunk = DWORD(std::min<size_t>(bytes.size() - written, 1u << 30));
        DWORD count = 0;
        if (!WriteFile(file, bytes.data() + written, chunk, &count, nullptr) || count == 0) return false;
        written += count;
    }
    return true;
}

} // namespace

const std::vector<WriteStep>& writeSteps() {
    static const std::vector<WriteStep> steps = {WriteStep::CreateTemporary, WriteStep::Write, WriteStep::SyncFile,
                                                 WriteStep::Close, WriteStep::Rename};
    return steps;
}

bool read(const P<IURI>& uri, std::string& bytes, const String& operation) {
    const std::wstring path = localPath(uri);
    if (isFolder(path)) throwIsFolder(uri, operation);
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        // (Wine answers "file not found" on a drive that does not exist, too.)
        if (error == ERROR_FILE_NOT_FOUND && isFolder(folderOf(path))) return false;
        if (error == ERROR_FILE_NOT_FOUND) throwReadError(uri, operation, ERROR_PATH_NOT_FOUND);
        if (error == ERROR_ACCESS_DENIED) throw CFileAccessDeniedError(uri);
        throwReadError(uri, operation, error);
    }
    bytes.clear();
    char buffer[65536];
    for (;;) {
        DWORD count = 0;
        if (!ReadFile(file, buffer, sizeof buffer, &count, nullptr)) {
            const DWORD error = GetLastError();
            CloseHandle(file);
            throwReadError(uri, operation, error);
        }
        if (count == 0) break;
        bytes.append(buffer, count);
    }
    CloseHandle(file);
    return true;
}

void replace(const P<IURI>& uri, const std::string& bytes, const String& operation) {
    const std::wstring path = localPath(uri);
    if (isFolder(path)) throwIsFolder(uri, operation);
    const std::wstring temporary = temporaryName(path);
    HANDLE file = INVALID_HANDLE_VALUE;
    DWORD error = runStep(WriteStep::CreateTemporary, [&] {
        file = CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        return file != INVALID_HANDLE_VALUE;
    });
    if (error) throwWriteError(uri, operation, error);

    error = runStep(WriteStep::Write, [&] { return writeAll(file, bytes); });
    if (!error) error = runStep(WriteStep::SyncFile, [&] { return FlushFileBuffers(file) != 0; });
    // The handle is released even when the close fails (or is made to fail).
    const bool closeFails = stepFails(WriteStep::Close);
    const DWORD closeError = CloseHandle(file) ? ERROR_SUCCESS : GetLastError();
    if (!error) error = closeFails ? ERROR_WRITE_FAULT : closeError;
    if (!error) {
        error = runStep(WriteStep::Rename, [&] {
            return MoveFileExW(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
        });
    }
    if (error) {
        DeleteFileW(temporary.c_str());
        throwWriteError(uri, operation, error);
    }
}

} // namespace zuno::storeFile
