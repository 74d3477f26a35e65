#pragma once
// The real file system with failures injected on demand, for tests that run as root and so
// cannot rely on permissions to make an operation fail.

#include "document/file_system.h"

#include <cerrno>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <unistd.h>

namespace quirnel::test {

enum class FileOp
{
    Read,
    CreateTemp,
    Write,
    Close,
    Rename,
    Copy,
    Remove,
    CreateDirectory
};

class FaultyFileSystem : public FileSystem
{
public:
    /// Asked before each operation with its paths (`to` is empty for one-path operations);
    /// a non-zero answer is the errno value the operation fails with.
    std::function<int(FileOp op, const std::string& from, const std::string& to)> fault;
    /// Bytes that writes may still put out; the write that goes past it writes up to the limit
    /// and then fails with ENOSPC.
    std::size_t writeBudget = std::numeric_limits<std::size_t>::max();
    /// Closes without waiting for the disk, for tests that save many times.
    bool skipFlush = false;
    /// When set, every file read gives these bytes instead of the disk's.
    std::optional<std::string> readContent;

    /// Makes every `op` fail with `error`.
    void FailOn(FileOp op, int error)
    {
        fault = [op, error](FileOp asked, const std::string&, const std::string&) {
            return asked == op ? error : 0;
        };
    }

    bool ReadWholeFile(const std::string& path, std::string& data, int& error) override
    {
        if (Fails(FileOp::Read, path, {}, error))
            return false;
        if (readContent) {
            data = *readContent;
            return true;
        }
        return RealFileSystem().ReadWholeFile(path, data, error);
    }
    bool Stat(const std::string& path, FileInfo& info, int& error) override
    {
        return RealFileSystem().Stat(path, info, error);
    }
    bool CreateTempFile(const std::string& folder, std::string& path, Handle& handle,
                        int& error) override
    {
        return !Fails(FileOp::CreateTemp, folder, {}, error) &&
               RealFileSystem().CreateTempFile(folder, path, handle, error);
    }
    bool Write(Handle handle, const char* data, std::size_t size, int& error) override
    {
        if (Fails(FileOp::Write, {}, {}, error))
            return false;
        if (size > writeBudget) {
            RealFileSystem().Write(handle, data, writeBudget, error);
            writeBudget = 0;
            error = ENOSPC;
            return false;
        }
        writeBudget -= size;
        return RealFileSystem().Write(handle, data, size, error);
    }
    bool Close(Handle handle, int& error) override
    {
        if (Fails(FileOp::Close, {}, {}, error)) {
            int ignored = 0;
            RealFileSystem().Close(handle, ignored);
            return false;
        }
        if (skipFlush && ::close(handle) == 0)
            return true;
        return RealFileSystem().Close(handle, error);
    }
    bool Rename(const std::string& from, const std::string& to, int& error) override
    {
        return !Fails(FileOp::Rename, from, to, error) && RealFileSystem().Rename(from, to, error);
    }
    bool Copy(const std::string& from, const std::string& to, int& error) override
    {
        return !Fails(FileOp::Copy, from, to, error) && RealFileSystem().Copy(from, to, error);
    }
    bool Remove(const std::string& path, int& error) override
    {
        return !Fails(FileOp::Remove, path, {}, error) && RealFileSystem().Remove(path, error);
    }
    bool CopyPermissions(const std::string& model, const std::string& path, int& error) override
    {
        return RealFileSystem().CopyPermissions(model, path, error);
    }
    bool CreateDirectory(const std::string& path, int& error) override
    {
        return !Fails(FileOp::CreateDirectory, path, {}, error) &&
               RealFileSystem().CreateDirectory(path, error);
    }

private:
    bool Fails(FileOp op, const std::string& from, const std::string& to, int& error)
    {
        const int injected = fault ? fault(op, from, to) : 0;
        if (injected)
            error = injected;
        return injected != 0;
    }
};

} // namespace quirnel::test
