#pragma once
// Files held in memory, so that a fuzz target can load and save thousands of times a second
// without touching the disk. Every operation succeeds unless its file is missing.

#include "document/file_system.h"

#include <cerrno>
#include <map>
#include <string>

namespace quirnel::fuzz {

class MemoryFileSystem : public FileSystem
{
public:
    std::map<std::string, std::string> files;

    bool ReadWholeFile(const std::string& path, std::string& data, int& error) override
    {
        const auto found = files.find(path);
        if (found == files.end())
            return Missing(error);
        data = found->second;
        return true;
    }
    bool Stat(const std::string& path, FileInfo& info, int&) override
    {
        info = FileInfo();
        const auto found = files.find(path);
        if (found != files.end()) {
            info.exists = true;
            info.size = found->second.size();
        }
        return true;
    }
    bool CreateTempFile(const std::string& folder, std::string& path, Handle& handle, int&) override
    {
        handle = ++m_lastHandle;
        path = folder + "/~qrn-" + std::to_string(handle) + ".tmp";
        files[path].clear();
        m_open[handle] = path;
        return true;
    }
    bool Write(Handle handle, const char* data, std::size_t size, int& error) override
    {
        const auto found = m_open.find(handle);
        if (found == m_open.end()) {
            error = EBADF;
            return false;
        }
        files[found->second].append(data, size);
        return true;
    }
    bool Close(Handle handle, int& error) override
    {
        if (m_open.erase(handle) == 0) {
            error = EBADF;
            return false;
        }
        return true;
    }
    bool Rename(const std::string& from, const std::string& to, int& error) override
    {
        const auto found = files.find(from);
        if (found == files.end())
            return Missing(error);
        std::string data = std::move(found->second);
        files.erase(found);
        files[to] = std::move(data);
        return true;
    }
    bool Copy(const std::string& from, const std::string& to, int& error) override
    {
        const auto found = files.find(from);
        if (found == files.end())
            return Missing(error);
        files[to] = found->second;
        return true;
    }
    bool Remove(const std::string& path, int& error) override
    {
        return files.erase(path) != 0 || Missing(error);
    }
    bool CopyPermissions(const std::string&, const std::string&, int&) override { return true; }
    bool CreateDirectory(const std::string&, int&) override { return true; }
    bool GivePermissions(Handle, const std::string&, int&) override { return true; }
    bool ResolveLink(const std::string& path, std::string& target, int&) override
    {
        target = path;
        return true;
    }
    bool Link(const std::string& from, const std::string& to, int& error) override
    {
        return Copy(from, to, error);
    }

private:
    static bool Missing(int& error)
    {
        error = ENOENT;
        return false;
    }

    std::map<Handle, std::string> m_open;
    Handle m_lastHandle = 2;
};

} // namespace quirnel::fuzz
