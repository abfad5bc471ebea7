// Loaded before a program (LD_PRELOAD): makes one of its calls on files fail, write only half, or
// be its last. Only files below one directory count, so that what the system's libraries do for
// themselves is left alone. Uses nothing of the project, and nothing that would itself write files.
//
//     ZELVORA_FAULT_BELOW   the directory, absolute, without a separator at its end
//     ZELVORA_FAULT_AT      number of the call, from 1; 0: none
//     ZELVORA_FAULT_HOW     what becomes of it, see parseMode()
//     ZELVORA_FAULT_LOG     file outside the directory that tells which call it was
//     ZELVORA_FAULT_WAIT    if set, calls count from zelvora_fault_begin() on

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

enum class Call
{
    Open,
    Create, // an open that may make the file, or a folder or a link that is made
    Read,
    Write,
    Sync,
    Name, // a file is renamed, removed or given other rights
    Truncate,
    Close
};

enum class Mode
{
    NoSpace,
    BadDisk,
    NoAccess,
    Half,     // writes half, once, without an error
    Full,     // the disk stays full from here on
    Gone,     // everything fails from here on
    Exit,     // ends before the call
    Kill,     // is killed after it, or amid a write
    Unwritten // only counts
};

enum class Fate
{
    Pass,
    Fail,
    Half,
    Kill
};

Mode parseMode(const char* name)
{
    const char* const names[] = {"enospc", "eio", "eacces", "half", "full", "gone", "exit", "kill"};
    for (int i = 0; name && i < 8; ++i) {
        if (std::strcmp(name, names[i]) == 0) {
            return static_cast<Mode>(i);
        }
    }
    return Mode::Unwritten;
}

const char* environment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

struct Settings
{
    const char* below = environment("ZELVORA_FAULT_BELOW");
    size_t belowSize = std::strlen(below);
    long at = std::atol(environment("ZELVORA_FAULT_AT"));
    Mode mode = parseMode(std::getenv("ZELVORA_FAULT_HOW"));
    const char* log = environment("ZELVORA_FAULT_LOG");
};

std::atomic<bool> counting{std::getenv("ZELVORA_FAULT_WAIT") == nullptr};
std::atomic<long> counted{0};

const Settings& settings()
{
    static const Settings instance;
    return instance;
}

template <class Function>
Function next(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

bool concerns(const char* path)
{
    const Settings& set = settings();
    if (!path || set.belowSize == 0) {
        return false;
    }
    char whole[PATH_MAX];
    if (path[0] != '/') {
        char current[PATH_MAX];
        if (!getcwd(current, sizeof current)) {
            return false;
        }
        if (std::strlen(current) + std::strlen(path) + 2 > sizeof whole) {
            return false;
        }
        std::strcat(std::strcat(std::strcpy(whole, current), "/"), path);
        path = whole;
    }
    const bool isBelow = std::strncmp(path, set.below, set.belowSize) == 0;
    return isBelow && (path[set.belowSize] == '/' || path[set.belowSize] == '\0');
}

bool concerns(int fd)
{
    char link[64];
    char path[PATH_MAX];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
    const ssize_t size = readlink(link, path, sizeof path - 1);
    if (size < 0) {
        return false;
    }
    path[size] = '\0';
    return concerns(path);
}

bool isStruck(Call call, Mode mode, bool isFirst)
{
    switch (mode) {
    case Mode::NoSpace:
        return call != Call::Read && call != Call::Open;
    case Mode::NoAccess:
        return call == Call::Open || call == Call::Create || call == Call::Name;
    case Mode::Half:
        return call == Call::Write;
    case Mode::Full:
        return isFirst ? call != Call::Read && call != Call::Open
                       : call == Call::Create || call == Call::Write || call == Call::Sync;
    case Mode::Exit:
    case Mode::Kill:
        return call != Call::Read;
    case Mode::BadDisk:
    case Mode::Gone:
    case Mode::Unwritten:
        break;
    }
    return true;
}

void tell(const char* name, long number)
{
    char line[128];
    const int size = std::snprintf(line, sizeof line, "%s %ld\n", name, number);
    // Not through the functions below.
    const long fd =
        syscall(SYS_openat, AT_FDCWD, settings().log, O_WRONLY | O_CREAT | O_APPEND, 0644);
    if (fd >= 0) {
        syscall(SYS_write, fd, line, size);
        syscall(SYS_close, fd);
    }
}

bool staysBroken(Mode mode)
{
    return mode == Mode::Full || mode == Mode::Gone;
}

int errorOf(Mode mode)
{
    switch (mode) {
    case Mode::NoSpace:
    case Mode::Full:
        return ENOSPC;
    case Mode::NoAccess:
        return EACCES;
    default:
        return EIO;
    }
}

Fate fateOf(Call call, const char* name)
{
    const Settings& set = settings();
    const bool isBroken = staysBroken(set.mode) && counted >= set.at;
    if (!counting || !isStruck(call, set.mode, !isBroken)) {
        return Fate::Pass;
    }
    const long number = ++counted;
    if (set.at == 0 || number < set.at || (number > set.at && !staysBroken(set.mode))) {
        return Fate::Pass;
    }
    if (number == set.at) {
        tell(name, number);
    }
    switch (set.mode) {
    case Mode::Exit:
        _exit(86);
    case Mode::Kill:
        return Fate::Kill;
    case Mode::Half:
        return Fate::Half;
    default:
        errno = errorOf(set.mode);
        return Fate::Fail;
    }
}

template <class Run>
auto run(bool isConcerned, Call call, const char* name, Run function) -> decltype(function())
{
    const Fate fate = isConcerned ? fateOf(call, name) : Fate::Pass;
    if (fate == Fate::Fail) {
        return static_cast<decltype(function())>(-1);
    }
    const auto result = function();
    if (fate == Fate::Kill) {
        raise(SIGKILL);
    }
    return result;
}

/// The same for what moves `size` bytes.
template <class Run>
ssize_t transfer(int fd, const char* name, size_t size, Run function)
{
    const Fate fate = concerns(fd) ? fateOf(Call::Write, name) : Fate::Pass;
    if (fate == Fate::Fail) {
        return -1;
    }
    const bool isCut = fate == Fate::Half || fate == Fate::Kill;
    const ssize_t result = function(isCut && size > 1 ? size / 2 : size);
    if (fate == Fate::Kill) {
        raise(SIGKILL);
    }
    return result;
}

/// A file that failed to close is closed nevertheless.
int closeOrFail(int fd)
{
    using Function = int (*)(int);
    static const auto real = next<Function>("close");
    const Fate fate = concerns(fd) ? fateOf(Call::Close, "close") : Fate::Pass;
    const int error = errno;
    const int result = real(fd);
    if (fate == Fate::Kill) {
        raise(SIGKILL);
    }
    if (fate == Fate::Fail) {
        errno = error;
        return -1;
    }
    return result;
}

bool takesMode(int flags)
{
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

Call callOf(int flags)
{
    return takesMode(flags) ? Call::Create : Call::Open;
}

} // namespace

extern "C" {

/// Calls count from here on.
__attribute__((visibility("default"))) void zelvora_fault_begin()
{
    counting = true;
}

int open(const char* path, int flags, ...)
{
    using Function = int (*)(const char*, int, ...);
    static const auto real = next<Function>("open");
    va_list more;
    va_start(more, flags);
    const mode_t mode = takesMode(flags) ? va_arg(more, mode_t) : 0;
    va_end(more);
    return run(concerns(path), callOf(flags), "open", [&] { return real(path, flags, mode); });
}

int open64(const char* path, int flags, ...)
{
    using Function = int (*)(const char*, int, ...);
    static const auto real = next<Function>("open64");
    va_list more;
    va_start(more, flags);
    const mode_t mode = takesMode(flags) ? va_arg(more, mode_t) : 0;
    va_end(more);
    return run(concerns(path), callOf(flags), "open", [&] { return real(path, flags, mode); });
}

int openat(int folder, const char* path, int flags, ...)
{
    using Function = int (*)(int, const char*, int, ...);
    static const auto real = next<Function>("openat");
    va_list more;
    va_start(more, flags);
    const mode_t mode = takesMode(flags) ? va_arg(more, mode_t) : 0;
    va_end(more);
    return run(concerns(path), callOf(flags), "open",
               [&] { return real(folder, path, flags, mode); });
}

int creat(const char* path, mode_t mode)
{
    using Function = int (*)(const char*, mode_t);
    static const auto real = next<Function>("creat");
    return run(concerns(path), Call::Create, "creat", [&] { return real(path, mode); });
}

FILE* fopen(const char* path, const char* mode)
{
    using Function = FILE* (*)(const char*, const char*);
    static const auto real = next<Function>("fopen");
    const Call call = mode[0] == 'r' ? Call::Open : Call::Create;
    const Fate fate = concerns(path) ? fateOf(call, "fopen") : Fate::Pass;
    FILE* file = fate == Fate::Fail ? nullptr : real(path, mode);
    if (fate == Fate::Kill) {
        raise(SIGKILL);
    }
    return file;
}

FILE* fopen64(const char* path, const char* mode)
{
    return fopen(path, mode);
}

ssize_t read(int fd, void* buffer, size_t size)
{
    using Function = ssize_t (*)(int, void*, size_t);
    static const auto real = next<Function>("read");
    return run(concerns(fd), Call::Read, "read", [&] { return real(fd, buffer, size); });
}

ssize_t pread64(int fd, void* buffer, size_t size, off64_t offset)
{
    using Function = ssize_t (*)(int, void*, size_t, off64_t);
    static const auto real = next<Function>("pread64");
    return run(concerns(fd), Call::Read, "pread", [&] { return real(fd, buffer, size, offset); });
}

ssize_t pread(int fd, void* buffer, size_t size, off_t offset)
{
    return pread64(fd, buffer, size, offset);
}

ssize_t write(int fd, const void* buffer, size_t size)
{
    using Function = ssize_t (*)(int, const void*, size_t);
    static const auto real = next<Function>("write");
    return transfer(fd, "write", size, [&](size_t part) { return real(fd, buffer, part); });
}

ssize_t pwrite64(int fd, const void* buffer, size_t size, off64_t offset)
{
    using Function = ssize_t (*)(int, const void*, size_t, off64_t);
    static const auto real = next<Function>("pwrite64");
    return transfer(fd, "pwrite", size,
                    [&](size_t part) { return real(fd, buffer, part, offset); });
}

ssize_t pwrite(int fd, const void* buffer, size_t size, off_t offset)
{
    return pwrite64(fd, buffer, size, offset);
}

ssize_t writev(int fd, const iovec* parts, int count)
{
    using Function = ssize_t (*)(int, const iovec*, int);
    static const auto real = next<Function>("writev");
    return transfer(fd, "writev", static_cast<size_t>(count),
                    [&](size_t some) { return real(fd, parts, static_cast<int>(some)); });
}

ssize_t sendfile(int to, int from, off_t* offset, size_t size)
{
    using Function = ssize_t (*)(int, int, off_t*, size_t);
    static const auto real = next<Function>("sendfile");
    struct stat source = {};
    const bool isKnown = fstat(from, &source) == 0 && source.st_size > 0;
    const size_t all = static_cast<size_t>(source.st_size);
    return transfer(to, "sendfile", isKnown && all < size ? all : size,
                    [&](size_t part) { return real(to, from, offset, part); });
}

ssize_t sendfile64(int to, int from, off64_t* offset, size_t size)
{
    return sendfile(to, from, offset, size);
}

ssize_t copy_file_range(int from, off64_t* fromAt, int to, off64_t* toAt, size_t size,
                        unsigned flags)
{
    using Function = ssize_t (*)(int, off64_t*, int, off64_t*, size_t, unsigned);
    static const auto real = next<Function>("copy_file_range");
    return transfer(to, "copy_file_range", size,
                    [&](size_t part) { return real(from, fromAt, to, toAt, part, flags); });
}

int fsync(int fd)
{
    using Function = int (*)(int);
    static const auto real = next<Function>("fsync");
    return run(concerns(fd), Call::Sync, "fsync", [&] { return real(fd); });
}

int fdatasync(int fd)
{
    using Function = int (*)(int);
    static const auto real = next<Function>("fdatasync");
    return run(concerns(fd), Call::Sync, "fdatasync", [&] { return real(fd); });
}

int ftruncate(int fd, off_t size)
{
    using Function = int (*)(int, off_t);
    static const auto real = next<Function>("ftruncate");
    return run(concerns(fd), Call::Truncate, "ftruncate", [&] { return real(fd, size); });
}

int ftruncate64(int fd, off64_t size)
{
    return ftruncate(fd, size);
}

int fchmod(int fd, mode_t mode)
{
    using Function = int (*)(int, mode_t);
    static const auto real = next<Function>("fchmod");
    return run(concerns(fd), Call::Name, "fchmod", [&] { return real(fd, mode); });
}

int chmod(const char* path, mode_t mode)
{
    using Function = int (*)(const char*, mode_t);
    static const auto real = next<Function>("chmod");
    return run(concerns(path), Call::Name, "chmod", [&] { return real(path, mode); });
}

int rename(const char* from, const char* to)
{
    using Function = int (*)(const char*, const char*);
    static const auto real = next<Function>("rename");
    return run(concerns(from) || concerns(to), Call::Name, "rename",
               [&] { return real(from, to); });
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags)
{
    using Function = int (*)(int, const char*, int, const char*, unsigned);
    static const auto real = next<Function>("renameat2");
    return run(concerns(from) || concerns(to), Call::Name, "renameat2",
               [&] { return real(fromFolder, from, toFolder, to, flags); });
}

int link(const char* from, const char* to)
{
    using Function = int (*)(const char*, const char*);
    static const auto real = next<Function>("link");
    return run(concerns(to), Call::Create, "link", [&] { return real(from, to); });
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags)
{
    using Function = int (*)(int, const char*, int, const char*, int);
    static const auto real = next<Function>("linkat");
    return run(concerns(to), Call::Create, "linkat",
               [&] { return real(fromFolder, from, toFolder, to, flags); });
}

int unlink(const char* path)
{
    using Function = int (*)(const char*);
    static const auto real = next<Function>("unlink");
    return run(concerns(path), Call::Name, "unlink", [&] { return real(path); });
}

int unlinkat(int folder, const char* path, int flags)
{
    using Function = int (*)(int, const char*, int);
    static const auto real = next<Function>("unlinkat");
    return run(concerns(path), Call::Name, "unlinkat", [&] { return real(folder, path, flags); });
}

int mkdir(const char* path, mode_t mode)
{
    using Function = int (*)(const char*, mode_t);
    static const auto real = next<Function>("mkdir");
    return run(concerns(path), Call::Create, "mkdir", [&] { return real(path, mode); });
}

int close(int fd)
{
    return closeOrFail(fd);
}

} // extern "C"
