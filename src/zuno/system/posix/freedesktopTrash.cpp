#include "system/posix/freedesktopTrash.h"

#include "text/percentEncoding.h"
#include "mail/posix/xdgDesktop.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zuno::posix {

namespace {

const mode_t PrivateFolderMode = 0700;

// Creates a folder and its missing parents; 0 or the errno value.
int makeFolders(const std::string& path) {
    for (size_t slash = path.find('/', 1);; slash = path.find('/', slash + 1)) {
        const std::string folder = path.substr(0, slash);
        struct stat info;
        if (mkdir(folder.c_str(), PrivateFolderMode) != 0 && errno != EEXIST) return errno;
        if (stat(folder.c_str(), &info) != 0) return errno;
        if (!S_ISDIR(info.st_mode)) return ENOTDIR;
        if (slash == std::string::npos) return 0;
    }
}

// "name.ext" with a number before its extension: "name.2.ext"; 1 gives the name itself.
std::string numberedName(const std::string& name, unsigned number) {
    if (number == 1) return name;
    const size_t dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0) return name + "." + std::to_string(number);
    return name.substr(0, dot) + "." + std::to_string(number) + name.substr(dot);
}

std::string deletionDate() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local);
    return text;
}

int writeAll(int fd, const std::string& text) {
    for (size_t done = 0; done < text.size();) {
        const ssize_t count = write(fd, text.data() + done, text.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return errno;
        done += size_t(count);
    }
    return 0;
}

// Copies a regular file's content to a new file `target` with the same permissions.
int copyFile(const std::string& source, const std::string& target) {
    const int in = open(source.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0) return errno;
    struct stat info;
    int error = fstat(in, &info) != 0 ? errno : S_ISREG(info.st_mode) ? 0 : EXDEV;
    const int out = error ? -1 : open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, info.st_mode & 07777);
    if (!error && out < 0) error = errno;
    char buffer[65536];
    while (!error) {
        const ssize_t count = read(in, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) {
            error = count < 0 ? errno : 0;
            break;
        }
        error = writeAll(out, std::string(buffer, size_t(count)));
    }
    if (out >= 0 && close(out) != 0 && !error) error = errno;
    close(in);
    if (error && out >= 0) unlink(target.c_str());
    return error;
}

// Moves a file, copying it across file systems.
int moveFile(const std::string& source, const std::string& target) {
    if (rename(source.c_str(), target.c_str()) == 0) return 0;
    if (errno != EXDEV) return errno;
    if (const int error = copyFile(source, target)) return error;
    if (unlink(source.c_str()) == 0) return 0;
    const int error = errno;
    unlink(target.c_str());
    return error;
}

// Reserves a trash name by creating its info file exclusively, as desktops expect,
// asks, and answers the name; empty with `error` set when that fails.
std::string reserveTrashName(const std::string& trash, const std::string& path, int& error) {
    const std::string name = path.substr(path.rfind('/') + 1);
    const std::string info =
        "[Trash Info]\nPath=" + percentEncode(path, "/") + "\nDeletionDate=" + deletionDate() + "\n";
    for (unsigned number = 1;; ++number) {
        const std::string candidate = numberedName(name, number);
        const std::string infoPath = trash + "/info/" + candidate + ".trashinfo";
        const int fd = open(infoPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0 && errno == EEXIST) continue;
        if (fd < 0) {
            error = errno;
            return "";
        }
        struct stat taken;
        const int lookup = lstat((trash + "/files/" + candidate).c_str(), &taken) == 0 ? EEXIST : errno;
        error = lookup == ENOENT ? writeAll(fd, info) : lookup;
        close(fd);
        if (error == 0) return candidate;
        unlink(infoPath.c_str());
        if (error != EEXIST) return "";
    }
}

} // namespace

std::string homeTrashFolder() {
    return xdgDataHome() + "/Trash";
}

int moveToTrash(const std::string& givenPath) {
    const size_t end = givenPath.find_last_not_of('/');
    const std::string path = end == std::string::npos ? givenPath : givenPath.substr(0, end + 1);
    struct stat info;
    if (lstat(path.c_str(), &info) != 0) return errno == ENOTDIR ? ENOENT : errno;
    const std::string trash = homeTrashFolder();
    if (const int error = makeFolders(trash + "/files")) return error;
    if (const int error = makeFolders(trash + "/info")) return error;
    int error = 0;
    const std::string name = reserveTrashName(trash, path, error);
    if (name.empty()) return error;
    error = moveFile(path, trash + "/files/" + name);
    if (error) unlink((trash + "/info/" + name + ".trashinfo").c_str());
    return error;
}

} // namespace zuno::posix
