#pragma once
// The file operations that loading, saving and backups need, behind one interface so that tests
// can make any of them fail: the tests run as root, which ignores permissions, so a read-only
// file or a full disk has to be simulated here.

#include <cstdint>
#include <string>

namespace quirnel {

/// Error codes as the messages classify them; other system errors keep their own number.
inline constexpr int kErrorFileNotFound = 2;
inline constexpr int kErrorAccessDenied = 5;

struct FileInfo
{
    bool exists = false;
    bool isDirectory = false;
    /// The owner may not write it (the file's read-only attribute).
    bool readOnly = false;
    std::uint64_t size = 0;
    /// Last write time in nanoseconds since the epoch.
    std::int64_t modified = 0;
};

/// Every operation returns false on failure and leaves the system's errno value in `error`.
class FileSystem
{
public:
    using Handle = int;

    virtual ~FileSystem() = default;

    /// Replaces `data` with the file's bytes. Fails with ENOMEM, before reading, when the file
    /// is larger than the memory that can be had.
    virtual bool ReadWholeFile(const std::string& path, std::string& data, int& error) = 0;
    /// Information about a path, following links; a missing path is not an error (exists =
    /// false).
    virtual bool Stat(const std::string& path, FileInfo& info, int& error) = 0;
    /// Creates a new, empty file with a unique name in the folder, open for writing, with the
    /// permissions a new file gets there by default.
    virtual bool CreateTempFile(const std::string& folder, std::string& path, Handle& handle,
                                int& error) = 0;
    virtual bool Write(Handle handle, const char* data, std::size_t size, int& error) = 0;
    /// Flushes the file to the disk, then closes it; the handle is gone either way.
    virtual bool Close(Handle handle, int& error) = 0;
    /// Moves a file, replacing any file of the new name in one step.
    virtual bool Rename(const std::string& from, const std::string& to, int& error) = 0;
    /// Copies a file, replacing any file of the new name and keeping its last write time. A
    /// failed copy leaves no file of the new name.
    virtual bool Copy(const std::string& from, const std::string& to, int& error) = 0;
    virtual bool Remove(const std::string& path, int& error) = 0;
    /// Gives `path` the access permissions of `model`.
    virtual bool CopyPermissions(const std::string& model, const std::string& path, int& error) = 0;
    virtual bool CreateDirectory(const std::string& path, int& error) = 0;

    // The operations below use the machine's files unless overridden, so that wrappers which
    // only watch a few operations need not forward them.

    /// Gives the open file the access permissions of the file `model`.
    virtual bool GivePermissions(Handle handle, const std::string& model, int& error);
    /// The file that `path` finally names once the symbolic links at its end are followed; it
    /// need not exist. A path that is no link names itself. Fails on a loop of links.
    virtual bool ResolveLink(const std::string& path, std::string& target, int& error);
    /// Gives the file `from` the second name `to` (a hard link); fails when `to` exists.
    virtual bool Link(const std::string& from, const std::string& to, int& error);
};

/// The machine's own files. Tests derive from it to make single operations fail.
class PosixFileSystem : public FileSystem
{
public:
    bool ReadWholeFile(const std::string& path, std::string& data, int& error) override;
    bool Stat(const std::string& path, FileInfo& info, int& error) override;
    bool CreateTempFile(const std::string& folder, std::string& path, Handle& handle,
                        int& error) override;
    bool Write(Handle handle, const char* data, std::size_t size, int& error) override;
    bool Close(Handle handle, int& error) override;
    bool Rename(const std::string& from, const std::string& to, int& error) override;
    bool Copy(const std::string& from, const std::string& to, int& error) override;
    bool Remove(const std::string& path, int& error) override;
    bool CopyPermissions(const std::string& model, const std::string& path, int& error) override;
    bool CreateDirectory(const std::string& path, int& error) override;
    bool GivePermissions(Handle handle, const std::string& model, int& error) override;
    bool ResolveLink(const std::string& path, std::string& target, int& error) override;
    bool Link(const std::string& from, const std::string& to, int& error) override;

protected:
    /// Every byte that Write and Copy put out passes here.
    virtual bool WriteBytes(Handle handle, const char* data, std::size_t size, int& error);
    /// Bytes of memory that one more allocation may take: what the machine has available,
    /// swap included, within the process's own limits.
    virtual std::uint64_t AvailableMemory();
};

/// The machine's own files.
FileSystem& RealFileSystem();

/// The system's text for an errno value.
std::string SystemErrorText(int error);
/// kErrorFileNotFound, kErrorAccessDenied or the errno value itself.
int ClassifyError(int error);

/// The folder part of a path ("." when it has none) and the name part.
std::string FolderOf(const std::string& path);
std::string FileNameOf(const std::string& path);

} // namespace quirnel
