#include "document/backup_file.h"

#include "document/file_system.h"

#include <cstdarg>
#include <cstdio>

namespace quirnel {

namespace {

std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

std::string Format(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    const int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::string out(static_cast<std::size_t>(length > 0 ? length : 0), '\0');
    std::vsnprintf(out.data(), out.size() + 1, format, args);
    va_end(args);
    return out;
}

/// A copy; when it fails (a full disk, an I/O error) a second name for the file itself, which
/// costs no room. A save replaces the file by renaming a new one onto its name, so the backup
/// keeps the old contents either way.
bool CopyOrLink(FileSystem& fileSystem, const std::string& from, const std::string& to, int& error)
{
    if (fileSystem.Copy(from, to, error))
        return true;
    int ignored = 0;
    return fileSystem.Link(from, to, ignored);
}

bool IsLegalPath(const std::string& path)
{
    return path.find('\0') == std::string::npos && path.back() != '/';
}

class BackupRun
{
public:
    BackupRun(FileSystem& fileSystem, unsigned flags, std::string* errors, BackupProgress progress,
              void* data)
        : m_fileSystem(fileSystem), m_flags(flags), m_errors(errors), m_progress(progress),
          m_data(data)
    {}

    void Error(const std::string& text)
    {
        if (m_errors)
            *m_errors += text;
    }

    /// True when the user cancelled.
    bool Step(const std::string& text)
    {
        return (m_flags & BACKUP_REPORT_STEPS) && m_progress && m_progress(text, m_data);
    }

    void Failed()
    {
        if ((m_flags & BACKUP_REPORT_STEPS) && m_progress)
            m_progress("FAILED\r\n", m_data);
    }

    bool Exists(const std::string& path)
    {
        FileInfo info;
        int error = 0;
        return m_fileSystem.Stat(path, info, error) && info.exists;
    }

    FileSystem& Files() { return m_fileSystem; }

private:
    FileSystem& m_fileSystem;
    unsigned m_flags;
    std::string* m_errors;
    BackupProgress m_progress;
    void* m_data;
};

} // namespace

std::string BackupName(const std::string& path, const std::string& backupFolder, unsigned flags,
                       int number)
{
    std::string name = FileNameOf(path);
    if (flags & BACKUP_STRIP_EXTENSION) {
        const auto dot = name.find_last_of('.');
        if (dot != std::string::npos && dot > 0)
            name.erase(dot);
    }
    std::string base;
    if (!backupFolder.empty())
        base = backupFolder + "/" + name;
    else if (path.find('/') == std::string::npos)
        base = name;
    else
        base = FolderOf(path) == "/" ? "/" + name : FolderOf(path) + "/" + name;
    return base + ".bk" + std::to_string(number);
}

int BackupFile(FileSystem& fileSystem, const std::string& path, const std::string& backupFolder,
               int levels, unsigned flags, std::string* errors, BackupProgress progress,
               void* progressData)
{
    BackupRun run(fileSystem, flags, errors, progress, progressData);
    if (path.empty()) {
        run.Error("You must specify the name of the file to be backed-up.");
        return kBackupFailed;
    }
    if (levels < 1 || levels > kMaxBackupLevels) {
        run.Error(
            Format("The number of backup levels must be between 1 and %d.", kMaxBackupLevels));
        return kBackupFailed;
    }
    if (!IsLegalPath(path)) {
        run.Error("The filepath \"" + path + "\" is not legal.");
        return kBackupFailed;
    }
    int error = 0;
    if (!backupFolder.empty()) {
        FileInfo folder;
        if (!fileSystem.Stat(backupFolder, folder, error) || !folder.exists) {
            if (!fileSystem.CreateDirectory(backupFolder, error)) {
                run.Error("The target directory '" + backupFolder + "' could not be created.\r\n" +
                          SystemErrorText(error) + "\r\n");
                return kBackupFailed;
            }
        }
    }
    // Only a file known to be missing is: a file that cannot be looked at may still be copied,
    // and a save goes on after a failed backup, losing the old version.
    FileInfo file;
    const bool looked = fileSystem.Stat(path, file, error);
    if (looked && !file.exists) {
        run.Error("The file \"" + path + "\" does not exist.");
        return kBackupFailed;
    }
    auto name = [&](int number) { return BackupName(path, backupFolder, flags, number); };

    if (looked && !(flags & BACKUP_ALWAYS)) {
        FileInfo newest;
        if (fileSystem.Stat(name(1), newest, error) && newest.exists && newest.size == file.size &&
            newest.modified == file.modified)
            return kBackupSkipped;
    }

    bool deleteFailed = false;
    for (int i = levels; i >= 1; --i) {
        if (i == levels) {
            const std::string oldest = name(i);
            if (run.Exists(oldest)) {
                if (run.Step(Format("Deleting %s\r\n", oldest.c_str())))
                    return kBackupCancelled;
                // Reported, but the rotation goes on: the move onto the oldest name replaces
                // that file anyway, and stopping here would leave the file itself without a
                // backup while the save goes on.
                if (!fileSystem.Remove(oldest, error)) {
                    run.Failed();
                    run.Error(Format("Failed to delete oldest backup \"%s\"\r\n", oldest.c_str()));
                    deleteFailed = true;
                }
            }
        }
        if (i > 1) {
            const std::string from = name(i - 1);
            const std::string to = name(i);
            if (!run.Exists(from))
                continue;
            if (run.Step(Format("Moving %s >>> %s\r\n", from.c_str(), to.c_str())))
                return kBackupCancelled;
            if (!fileSystem.Rename(from, to, error)) {
                run.Failed();
                if (!run.Exists(from))
                    run.Error(Format("Backup file missing: \"%s\"\r\n", from.c_str()));
                else
                    run.Error(
                        Format("Failed to move \"%s\" to \"%s\"\r\n", from.c_str(), to.c_str()));
                return kBackupFailed;
            }
            continue;
        }
        if (run.Step(Format("Copying %s\r\n", path.c_str())))
            return kBackupCancelled;
        if (!CopyOrLink(fileSystem, path, name(1), error)) {
            run.Failed();
            run.Error("Failed to backup the original file.\r\n" + SystemErrorText(error) + "\r\n");
            for (int back = 2; back <= levels; ++back) {
                int ignored = 0;
                if (run.Exists(name(back)))
                    fileSystem.Rename(name(back), name(back - 1), ignored);
            }
            return kBackupFailed;
        }
    }
    return deleteFailed ? kBackupFailed : kBackupDone;
}

bool ReplaceFile(FileSystem& fileSystem, const std::string& target, const std::string& newFile,
                 std::string& errorText, unsigned)
{
    errorText.clear();
    if (target.empty()) {
        errorText = "No old file was specified.";
        return false;
    }
    if (newFile.empty()) {
        errorText = "No new file was specified.";
        return false;
    }
    int error = 0;
    FileInfo info;
    // A read-only file is never replaced, as a protected file could not be overwritten; the
    // reason is spelt out because the system's own text would only say "permission denied".
    if (fileSystem.Stat(target, info, error) && info.exists && info.readOnly) {
        errorText = Format("Failed to replace file \"%s\": %s\r\n", target.c_str(),
                           "the read-only attribute is set.");
        return false;
    }
    // One rename puts the new file in place: the target is the old file until the moment it
    // is the new one, whatever fails. Nothing is moved aside or copied over the target, so no
    // failure can leave it half written or gone.
    if (!fileSystem.Rename(newFile, target, error)) {
        errorText = Format("Failed to replace file \"%s\": %s\r\n", target.c_str(),
                           SystemErrorText(error).c_str());
        return false;
    }
    return true;
}

} // namespace quirnel
