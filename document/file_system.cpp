#include "document/file_system.h"

#include "ostrand/core/link_target.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <limits>
#include <memory>
#include <random>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quirnel {

namespace {

/// Large buffers are touched once from end to end: huge pages save most of the page faults.
void AdviseHugePages(char* data, std::size_t size)
{
    constexpr std::uintptr_t kHugePage = 2u << 20;
    if (size < 4 * kHugePage)
        return;
    const auto begin = (reinterpret_cast<std::uintptr_t>(data) + kHugePage - 1) & ~(kHugePage - 1);
    const auto end = (reinterpret_cast<std::uintptr_t>(data) + size) & ~(kHugePage - 1);
    if (end > begin)
        ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
}

/// The number of a "Name:   1234 kB" line of a /proc file, in kilobytes; -1 when there is none.
std::int64_t ProcKilobytes(const char* file, std::string_view name)
{
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        if (line.size() > name.size() && line.compare(0, name.size(), name) == 0 &&
            line[name.size()] == ':')
            return std::strtoll(line.c_str() + name.size() + 1, nullptr, 10);
    }
    return -1;
}

/// What is left of a resource limit once `used` bytes are taken; unlimited when there is none.
std::uint64_t LeftWithin(int resource, std::int64_t usedKilobytes)
{
    struct rlimit limit
    {};
    if (::getrlimit(resource, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY)
        return std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t used = usedKilobytes > 0 ? std::uint64_t(usedKilobytes) * 1024 : 0;
    return limit.rlim_cur > used ? limit.rlim_cur - used : 0;
}

std::string JoinPath(const std::string& folder, const std::string& name)
{
    return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

} // namespace

bool PosixFileSystem::ReadWholeFile(const std::string& path, std::string& data, int& error)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        error = errno;
        return false;
    }
    struct stat st
    {};
    if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
        error = S_ISDIR(st.st_mode) ? EISDIR : errno;
        ::close(fd);
        return false;
    }
    // A file that cannot be held is refused before any of it is read: running out of memory
    // halfway would end the program, not the load.
    auto fits = [&](std::uint64_t bytes) {
        return bytes < data.max_size() && bytes <= AvailableMemory();
    };
    // One spare byte tells whether the file grew while it was read.
    const std::uint64_t expected = static_cast<std::uint64_t>(st.st_size) + 1;
    if (!fits(expected)) {
        error = ENOMEM;
        ::close(fd);
        return false;
    }
    data.clear();
    data.reserve(static_cast<std::size_t>(expected));
    AdviseHugePages(data.data(), static_cast<std::size_t>(expected));
    data.resize(static_cast<std::size_t>(expected));
    std::size_t size = 0;
    for (;;) {
        if (size == data.size()) {
            // The file grew while it was read, or it is a device that has no size.
            if (!fits(std::uint64_t(data.size()) * 2)) {
                error = ENOMEM;
                ::close(fd);
                data.clear();
                return false;
            }
            data.resize(data.size() * 2);
        }
        const ssize_t got = ::read(fd, data.data() + size, data.size() - size);
        if (got < 0) {
            if (errno == EINTR)
                continue;
            error = errno;
            ::close(fd);
            return false;
        }
        if (got == 0)
            break;
        size += static_cast<std::size_t>(got);
    }
    ::close(fd);
    data.resize(size);
    return true;
}

bool PosixFileSystem::Stat(const std::string& path, FileInfo& info, int& error)
{
    info = FileInfo();
    struct stat st
    {};
    if (::stat(path.c_str(), &st) != 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            return true;
        error = errno;
        return false;
    }
    info.exists = true;
    info.isDirectory = S_ISDIR(st.st_mode);
    info.readOnly = (st.st_mode & S_IWUSR) == 0;
    info.size = static_cast<std::uint64_t>(st.st_size);
    info.modified = static_cast<std::int64_t>(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
    return true;
}

bool PosixFileSystem::CreateTempFile(const std::string& folder, std::string& path, Handle& handle,
                                     int& error)
{
    // Not mkstemp: it makes the file private, and only the process's umask, which must not be
    // changed to be read, knows the permissions a new file ought to get. Opening with 0666
    // lets the system apply the umask (or the folder's default access list) itself.
    static constexpr char kLetters[] =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    thread_local std::mt19937_64 random{std::random_device{}()};
    const std::string base = JoinPath(folder.empty() ? std::string(".") : folder, "~qrn-");
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::string name = base;
        for (int i = 0; i < 6; ++i)
            name += kLetters[random() % (sizeof kLetters - 1)];
        name += ".tmp";
        const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0) {
            path = std::move(name);
            handle = fd;
            return true;
        }
        if (errno != EEXIST) {
            error = errno;
            return false;
        }
    }
    error = EEXIST;
    return false;
}

bool PosixFileSystem::WriteBytes(Handle handle, const char* data, std::size_t size, int& error)
{
    while (size > 0) {
        const ssize_t written = ::write(handle, data, size);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            error = errno;
            return false;
        }
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool PosixFileSystem::Write(Handle handle, const char* data, std::size_t size, int& error)
{
    return WriteBytes(handle, data, size, error);
}

bool PosixFileSystem::Close(Handle handle, int& error)
{
    bool ok = true;
    if (::fsync(handle) != 0) {
        error = errno;
        ok = false;
    }
    if (::close(handle) != 0 && ok) {
        error = errno;
        ok = false;
    }
    return ok;
}

bool PosixFileSystem::Rename(const std::string& from, const std::string& to, int& error)
{
    if (::rename(from.c_str(), to.c_str()) != 0) {
        error = errno;
        return false;
    }
    return true;
}

bool PosixFileSystem::Copy(const std::string& from, const std::string& to, int& error)
{
    const int in = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0) {
        error = errno;
        return false;
    }
    struct stat st
    {};
    if (::fstat(in, &st) != 0) {
        error = errno;
        ::close(in);
        return false;
    }
    const int out =
        ::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, st.st_mode & 07777);
    if (out < 0) {
        error = errno;
        ::close(in);
        return false;
    }
    constexpr std::size_t kChunk = 1 << 20;
    std::unique_ptr<char[]> chunk(new char[kChunk]);
    bool ok = true;
    for (;;) {
        const ssize_t got = ::read(in, chunk.get(), kChunk);
        if (got < 0) {
            if (errno == EINTR)
                continue;
            error = errno;
            ok = false;
            break;
        }
        if (got == 0)
            break;
        if (!WriteBytes(out, chunk.get(), static_cast<std::size_t>(got), error)) {
            ok = false;
            break;
        }
    }
    // The copy keeps the original's last write time: that is how a later backup recognises
    // that the file has not changed since.
    const struct timespec times[2] = {st.st_atim, st.st_mtim};
    if (ok && ::futimens(out, times) != 0) {
        error = errno;
        ok = false;
    }
    if (::close(out) != 0 && ok) {
        error = errno;
        ok = false;
    }
    ::close(in);
    if (!ok)
        ::unlink(to.c_str());
    return ok;
}

bool PosixFileSystem::Remove(const std::string& path, int& error)
{
    if (::unlink(path.c_str()) != 0) {
        error = errno;
        return false;
    }
    return true;
}

bool PosixFileSystem::CopyPermissions(const std::string& model, const std::string& path, int& error)
{
    struct stat st
    {};
    if (::stat(model.c_str(), &st) != 0 || ::chmod(path.c_str(), st.st_mode & 07777) != 0) {
        error = errno;
        return false;
    }
    return true;
}

bool PosixFileSystem::CreateDirectory(const std::string& path, int& error)
{
    if (::mkdir(path.c_str(), 0777) != 0) {
        error = errno;
        return false;
    }
    return true;
}

bool PosixFileSystem::GivePermissions(Handle handle, const std::string& model, int& error)
{
    struct stat st
    {};
    if (::stat(model.c_str(), &st) != 0 || ::fchmod(handle, st.st_mode & 07777) != 0) {
        error = errno;
        return false;
    }
    return true;
}

bool PosixFileSystem::ResolveLink(const std::string& path, std::string& target, int& error)
{
    return ost::ResolveLinkTarget(path, target, error);
}

std::uint64_t PosixFileSystem::AvailableMemory()
{
    std::uint64_t available = std::numeric_limits<std::uint64_t>::max();
    const std::int64_t memory = ProcKilobytes("/proc/meminfo", "MemAvailable");
    const std::int64_t swap = ProcKilobytes("/proc/meminfo", "SwapFree");
    if (memory >= 0)
        available = (std::uint64_t(memory) + std::uint64_t(std::max<std::int64_t>(swap, 0))) * 1024;
    available =
        std::min(available, LeftWithin(RLIMIT_AS, ProcKilobytes("/proc/self/status", "VmSize")));
    available =
        std::min(available, LeftWithin(RLIMIT_DATA, ProcKilobytes("/proc/self/status", "VmData")));
    return available;
}

bool PosixFileSystem::Link(const std::string& from, const std::string& to, int& error)
{
    if (::link(from.c_str(), to.c_str()) != 0) {
        error = errno;
        return false;
    }
    return true;
}

bool FileSystem::Link(const std::string& from, const std::string& to, int& error)
{
    return RealFileSystem().Link(from, to, error);
}

bool FileSystem::ResolveLink(const std::string& path, std::string& target, int& error)
{
    return RealFileSystem().ResolveLink(path, target, error);
}

bool FileSystem::GivePermissions(Handle handle, const std::string& model, int& error)
{
    return RealFileSystem().GivePermissions(handle, model, error);
}

FileSystem& RealFileSystem()
{
    static PosixFileSystem fileSystem;
    return fileSystem;
}

std::string SystemErrorText(int error)
{
    return std::strerror(error);
}

int ClassifyError(int error)
{
    if (error == ENOENT)
        return kErrorFileNotFound;
    if (error == EACCES || error == EPERM)
        return kErrorAccessDenied;
    return error;
}

std::string FolderOf(const std::string& path)
{
    const auto slash = path.find_last_of('/');
    if (slash == std::string::npos)
        return ".";
    if (slash == 0)
        return "/";
    return path.substr(0, slash);
}

std::string FileNameOf(const std::string& path)
{
    const auto slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

} // namespace quirnel
