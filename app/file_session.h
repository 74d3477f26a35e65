#pragma once
// The open file's life in the main window: open (plain, with a chosen format, from the recent
// files), save, save as, close, new file, the file history with each file's remembered view,
// the File Properties and Character set changes, and the watch for another program's changes.
// What only the window can do (file dialogs, the view around a reload, the file watch) goes
// through FileSessionHost, so every decision here runs without a window system.

#include "document/open_nonstandard_file.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace quirnel {

class FileHistory;
class InstanceFinder;
class TableDocument;
struct DocumentFrameSettings;
struct EditingState;
struct FileFormat;
struct FilePropertiesRequest;
struct NewFileRequest;
struct Preferences;

/// The dialogs of the File menu's flows; each answers false when the user cancelled.
class FileSessionDialogs : public DocumentDialogs
{
public:
    /// The open-file dialog, starting in `folder`; CSV files are offered first or last.
    virtual bool ChooseFileToOpen(const std::string& title, bool csvFirst,
                                  const std::string& folder, std::string& path) = 0;
    /// The save-as dialog, starting in `folder`.
    virtual bool ChooseSavePath(const std::string& folder, std::string& path) = 0;
    virtual bool NewFile(NewFileRequest& request) = 0;
    virtual bool FileProperties(FilePropertiesRequest& request) = 0;
};

class FileSessionHost
{
public:
    virtual ~FileSessionHost() = default;
    /// Puts a cell edit in progress into the table.
    virtual void CommitCellEdit() = 0;
    /// Around a change of the whole table: the view stays still until the end.
    virtual void BeginTableReset() = 0;
    virtual void EndTableReset() = 0;
    /// The table was replaced or rewritten (load, close, new file, new text mode): the view,
    /// the Editor pane and the caption show the document again.
    virtual void TableReplaced() = 0;
    /// Only the path or the modified mark changed (a save): the caption and the menus follow.
    virtual void FileStateChanged() = 0;
    /// Watches this file for changes by other programs; an empty path ends the watch.
    virtual void WatchFile(const std::string& path) = 0;
    /// The "Editor" pane mode, remembered per file.
    virtual bool MultilineEditing() const = 0;
    virtual void SetMultilineEditing(bool on) = 0;
};

class FileSession
{
public:
    /// Every reference must outlive the session. `historyFile` is where the file history is
    /// saved after a save.
    FileSession(TableDocument& document, FileHistory& history, DocumentFrameSettings& frame,
                const Preferences& prefs, EditingState& editing, FileSessionDialogs& dialogs,
                FileSessionHost& host, std::filesystem::path historyFile);

    /// Asks other instances before opening a document they show; none by default.
    void SetInstances(InstanceFinder* instances) { m_instances = instances; }

    /// Opens a file as the Open command does after its file dialog. `delimiter` 0 detects.
    /// False when nothing was opened (refused, failed, or switched to another instance).
    bool OpenPath(const std::string& path, char delimiter = 0);
    /// As OpenPath, with a format chosen by the caller; `title` titles the load's messages.
    bool OpenWithFormat(FileFormat format, const std::string& title = "Open File");
    /// Saves under the document's path, asking for one when it has none.
    bool Save();
    /// The save-as dialog from the last folder; false when cancelled.
    bool ChooseSavePath(std::string& path);
    bool SaveAs(const std::string& path);
    /// Commits edits, remembers the file's view and asks the document to let go (it may ask
    /// to save); false when the user kept it.
    bool Release();
    /// Release, then no file is open. False when the user kept the document.
    bool Close();
    /// Sets up an empty document as the New File dialog does on OK.
    void NewDocument(int encoding, char separator);

    /// The File menu's flows, dialogs included. RunNewFile and RunOpenFile answer whether a
    /// file is open now and the user went through with it.
    bool RunNewFile();
    bool RunOpenFile();
    void RunOpenNonstandardFile();
    void RunSaveAs();
    /// Position in the recent-files list, 0 the most recent.
    void OpenRecentFile(int position);
    void RunFileProperties();
    /// Position in CharacterSetChoices().
    void SetCharacterSet(int position);
    /// Stores the chosen format and converts the cells when the text mode changes.
    void ApplyFileProperties(const FilePropertiesRequest& request);

    /// The document's remembered view, applied at the end of its load.
    void RestoreFileProperties(FileFormat& format);
    /// The watched file changed on disk: unless it is our own write, asks whether to reopen.
    void FileChanged();

    std::string MostRecentFile() const;
    /// Reopens the last document when "Auto-open last file" is on and nothing was named.
    void AutoOpenLastFile(bool explicitStart);

private:
    struct FileStamp
    {
        std::filesystem::file_time_type modified;
        std::uintmax_t size = 0;
        bool operator==(const FileStamp&) const = default;
    };

    /// Asks whether to switch to another instance showing the path; true to go on opening.
    bool CheckOtherInstance(const std::string& path);
    void AfterLoad();
    void StoreCurrentFileProperties();
    void Watch();
    static std::optional<FileStamp> StampOf(const std::string& path);

    TableDocument& m_document;
    FileHistory& m_history;
    DocumentFrameSettings& m_frame;
    const Preferences& m_prefs;
    EditingState& m_editing;
    FileSessionDialogs& m_dialogs;
    FileSessionHost& m_host;
    std::filesystem::path m_historyFile;
    InstanceFinder* m_instances = nullptr;
    /// What the file looked like when we last read or wrote it, to tell our own saves apart
    /// from another program's changes.
    std::optional<FileStamp> m_known;
    bool m_askingAboutChange = false;
};

} // namespace quirnel
