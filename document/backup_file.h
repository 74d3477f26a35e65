#pragma once
// Rotating numbered backups of a file (".bk1" the newest) and the replacement of a file by a
// newly written one, the last two steps of every save.

#include <string>

namespace quirnel {

class FileSystem;

/// BackupFile flags.
inline constexpr unsigned BACKUP_ALWAYS = 1;          ///< back up even when ".bk1" looks the same
inline constexpr unsigned BACKUP_STRIP_EXTENSION = 8; ///< name backups without the extension
inline constexpr unsigned BACKUP_REPORT_STEPS = 64;   ///< tell the progress callback each step

/// BackupFile results.
inline constexpr int kBackupFailed = 0;
inline constexpr int kBackupDone = 1;
inline constexpr int kBackupSkipped = 2;
inline constexpr int kBackupCancelled = 3;

inline constexpr int kMaxBackupLevels = 999;

/// Receives each step's text; answering true cancels the backup.
using BackupProgress = bool (*)(const std::string& text, void* data);

/// The name of backup `number` of `path`: beside it, or in `backupFolder` when one is given.
std::string BackupName(const std::string& path, const std::string& backupFolder, unsigned flags,
                       int number);

/// Moves backups 1 .. levels-1 up by one (the oldest is deleted) and copies the file to backup
/// 1. When the copy fails the older backups are moved back down, so they are left as they were.
/// Messages are appended to `errors` when it is given.
int BackupFile(FileSystem& fileSystem, const std::string& path, const std::string& backupFolder,
               int levels, unsigned flags, std::string* errors, BackupProgress progress,
               void* progressData);

/// Puts `newFile` in the place of `target` in one rename; the old target is gone with it. On
/// failure the target is as it was, `newFile` is still there and `errorText` says why.
bool ReplaceFile(FileSystem& fileSystem, const std::string& target, const std::string& newFile,
                 std::string& errorText, unsigned flags);

} // namespace quirnel
