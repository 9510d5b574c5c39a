#include "stores/storeFile.h"

#include <zuno/CURIError.h>
#include <zuno/IPathes.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zuno::storeFile {

namespace {

std::string localPath(const P<IURI>& uri) {
    const String path = getPathes()->uriToPath(uri, false).toCP();
    return std::string(path.c_str(), size_t(path->getByteLength()));
}

std::string folderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool isFolder(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

// The file a link points to is the one replaced, so the link stays a link.
std::string resolvedTarget(const std::string& path) {
    struct stat info {};
    if (lstat(path.c_str(), &info) != 0 || !S_ISLNK(info.st_mode)) return path;
    char resolved[PATH_MAX];
    return realpath(path.c_str(), resolved) ? std::string(resolved) : path;
}

// Runs a step unless the test seam makes it fail; answers errno's value on failure.
template <class Operation>
int runStep(WriteStep step, Operation operation) {
    if (stepFails(step)) return EIO;
    return operation() ? 0 : errno;
}

bool writeAll(int file, const std::string& bytes) {
    size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(file, bytes.data() + written, bytes.size() - written);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        written += size_t(count);
    }
    return true;
}

bool syncFolder(const std::string& folder) {
    const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) return false;
    const bool synced = fsync(handle) == 0 || errno == EINVAL;  // some file systems cannot
    close(handle);
    return synced;
}

} // namespace

const std::vector<WriteStep>& writeSteps() {
    static const std::vector<WriteStep> steps = {WriteStep::CreateTemporary, WriteStep::Write, WriteStep::SyncFile,
                                                 WriteStep::Close, WriteStep::Rename, WriteStep::SyncFolder};
    return steps;
}

bool read(const P<IURI>& uri, std::string& bytes, const String& operation) {
    const std::string path = localPath(uri);
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        const int error = errno;
        if (error == ENOENT && isFolder(folderOf(path))) return false;
        if (error == EACCES) throw CFileAccessDeniedError(uri);
        throwReadError(uri, operation, uint32_t(error));
    }
    struct stat info {};
    if (fstat(file, &info) == 0 && S_ISDIR(info.st_mode)) {
        close(file);
        throwIsFolder(uri, operation);
    }
    bytes.clear();
    char buffer[65536];
    for (;;) {
        const ssize_t count = ::read(file, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) {
            const int error = errno;
            close(file);
            throwReadError(uri, operation, uint32_t(error));
        }
        if (count == 0) break;
        bytes.append(buffer, size_t(count));
    }
    close(file);
    return true;
}

void replace(const P<IURI>& uri, const std::string& bytes, const String& operation) {
    const std::string path = resolvedTarget(localPath(uri));
    if (isFolder(path)) throwIsFolder(uri, operation);
    std::string temporary = path + ".XXXXXX";
    int file = -1;
    int error = runStep(WriteStep::CreateTemporary, [&] {
        file = mkostemp(temporary.data(), O_CLOEXEC);
        return file >= 0;
    });
    if (error) throwWriteError(uri, operation, uint32_t(error));

    // A replaced file keeps its permissions; a new one gets the usual ones.
    struct stat old {};
    fchmod(file, stat(path.c_str(), &old) == 0 ? (old.st_mode & 07777) : 0644);
    error = runStep(WriteStep::Write, [&] { return writeAll(file, bytes); });
    if (!error) error = runStep(WriteStep::SyncFile, [&] { return fsync(file) == 0; });
    // The descriptor is released even when the close fails (or is made to fail).
    const bool closeFails = stepFails(WriteStep::Close);
    const int closeError = close(file) == 0 ? 0 : errno;
    if (!error) error = closeFails ? EIO : closeError;
    if (!error) error = runStep(WriteStep::Rename, [&] { return rename(temporary.c_str(), path.c_str()) == 0; });
    if (error) {
        unlink(temporary.c_str());
        throwWriteError(uri, operation, uint32_t(error));
    }
    error = runStep(WriteStep::SyncFolder, [&] { return syncFolder(folderOf(path)); });
    if (error) throwWriteError(uri, operation, uint32_t(error));
}

} // namespace zuno::storeFile
