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
#include <vector>

namespace quirnel::test {

enum class FileOp
{
    Read,
    Stat,
    CreateTemp,
    Write,
    Close,
    Rename,
    Copy,
    Remove,
    Permissions,
    ResolveLink,
    Link,
    CreateDirectory
};

struct FileCall
{
    FileOp op;
    std::string from;
    std::string to;
};

class FaultyFileSystem : public PosixFileSystem
{
public:
    /// Asked before each operation with its paths (`to` is empty for one-path operations);
    /// a non-zero answer is the errno value the operation fails with.
    std::function<int(FileOp op, const std::string& from, const std::string& to)> fault;
    /// A refused Write or Copy first puts out half of its bytes, as a disk that fills up
    /// or fails in the middle of a transfer would.
    bool midway = false;
    /// Bytes that writes may still put out; the write that goes past it writes up to the limit
    /// and then fails with ENOSPC.
    std::size_t writeBudget = std::numeric_limits<std::size_t>::max();
    /// Closes without waiting for the disk, for tests that save many times.
    bool skipFlush = false;
    /// When set, every file read gives these bytes instead of the disk's.
    std::optional<std::string> readContent;
    /// Memory that a whole-file read may take, when set; the machine's otherwise.
    std::optional<std::uint64_t> memory;
    /// Every operation asked for, in order, the refused ones included.
    std::vector<FileCall> calls;

    /// Makes every `op` fail with `error`.
    void FailOn(FileOp op, int error)
    {
        fault = [op, error](FileOp asked, const std::string&, const std::string&) {
            return asked == op ? error : 0;
        };
    }

    /// Makes the operation numbered `number` (from 1, as `calls` will count them from now on)
    /// fail with `error`.
    void FailCall(std::size_t number, int error)
    {
        calls.clear();
        fault = [this, number, error](FileOp, const std::string&, const std::string&) {
            return calls.size() == number ? error : 0;
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
        return PosixFileSystem::ReadWholeFile(path, data, error);
    }
    bool Stat(const std::string& path, FileInfo& info, int& error) override
    {
        info = FileInfo();
        return !Fails(FileOp::Stat, path, {}, error) && PosixFileSystem::Stat(path, info, error);
    }
    bool CreateTempFile(const std::string& folder, std::string& path, Handle& handle,
                        int& error) override
    {
        return !Fails(FileOp::CreateTemp, folder, {}, error) &&
               PosixFileSystem::CreateTempFile(folder, path, handle, error);
    }
    bool Write(Handle handle, const char* data, std::size_t size, int& error) override
    {
        if (int injected = Fault(FileOp::Write, {}, {})) {
            if (midway)
                PosixFileSystem::WriteBytes(handle, data, size / 2, error);
            error = injected;
            return false;
        }
        if (size > writeBudget) {
            PosixFileSystem::WriteBytes(handle, data, writeBudget, error);
            writeBudget = 0;
            error = ENOSPC;
            return false;
        }
        writeBudget -= size;
        return PosixFileSystem::Write(handle, data, size, error);
    }
    bool Close(Handle handle, int& error) override
    {
        if (Fails(FileOp::Close, {}, {}, error)) {
            ::close(handle);
            return false;
        }
        if (skipFlush && ::close(handle) == 0)
            return true;
        return PosixFileSystem::Close(handle, error);
    }
    bool Rename(const std::string& from, const std::string& to, int& error) override
    {
        return !Fails(FileOp::Rename, from, to, error) && PosixFileSystem::Rename(from, to, error);
    }
    bool Copy(const std::string& from, const std::string& to, int& error) override
    {
        if (int injected = Fault(FileOp::Copy, from, to)) {
            if (!midway) {
                error = injected;
                return false;
            }
            // The real copy runs and its first write gives up halfway, so that whatever the
            // copy does about a half-written file is what the test sees.
            m_failWriteMidway = injected;
            const bool copied = PosixFileSystem::Copy(from, to, error);
            m_failWriteMidway = 0;
            return copied;
        }
        return PosixFileSystem::Copy(from, to, error);
    }
    bool Remove(const std::string& path, int& error) override
    {
        return !Fails(FileOp::Remove, path, {}, error) && PosixFileSystem::Remove(path, error);
    }
    bool CreateDirectory(const std::string& path, int& error) override
    {
        return !Fails(FileOp::CreateDirectory, path, {}, error) &&
               PosixFileSystem::CreateDirectory(path, error);
    }

    bool GivePermissions(Handle handle, const std::string& model, int& error) override
    {
        return !Fails(FileOp::Permissions, model, {}, error) &&
               PosixFileSystem::GivePermissions(handle, model, error);
    }

    bool ResolveLink(const std::string& path, std::string& target, int& error) override
    {
        return !Fails(FileOp::ResolveLink, path, {}, error) &&
               PosixFileSystem::ResolveLink(path, target, error);
    }

    bool Link(const std::string& from, const std::string& to, int& error) override
    {
        return !Fails(FileOp::Link, from, to, error) && PosixFileSystem::Link(from, to, error);
    }

protected:
    std::uint64_t AvailableMemory() override
    {
        return memory ? *memory : PosixFileSystem::AvailableMemory();
    }
    bool WriteBytes(Handle handle, const char* data, std::size_t size, int& error) override
    {
        if (m_failWriteMidway == 0)
            return PosixFileSystem::WriteBytes(handle, data, size, error);
        PosixFileSystem::WriteBytes(handle, data, size / 2, error);
        error = m_failWriteMidway;
        return false;
    }

    /// Logs the operation; the errno value it is to fail with, or 0.
    int Fault(FileOp op, const std::string& from, const std::string& to)
    {
        calls.push_back({op, from, to});
        return fault ? fault(op, from, to) : 0;
    }
    bool Fails(FileOp op, const std::string& from, const std::string& to, int& error)
    {
        const int injected = Fault(op, from, to);
        if (injected)
            error = injected;
        return injected != 0;
    }

private:
    int m_failWriteMidway = 0;
};

} // namespace quirnel::test
