#include "app/file_session.h"

#include "app/instance_protocol.h"
#include "app/preferences.h"
#include "app/startup.h"
#include "document/csv_loader.h"
#include "document/csv_saver.h"
#include "document/file_properties.h"
#include "document/table_document.h"
#include "editing/tool_context.h"
#include "ostrand/codepage/code_page.h"
#include "ostrand/core/user_interface.h"
#include "view/sort_method_guess.h"

#include <system_error>

namespace quirnel {
namespace {

std::string AbsolutePath(const std::string& path)
{
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return error ? path : absolute.lexically_normal().string();
}

} // namespace

FileSession::FileSession(TableDocument& document, FileHistory& history,
                         DocumentFrameSettings& frame, const Preferences& prefs,
                         EditingState& editing, FileSessionDialogs& dialogs, FileSessionHost& host,
                         std::filesystem::path historyFile)
    : m_document(document), m_history(history), m_frame(frame), m_prefs(prefs), m_editing(editing),
      m_dialogs(dialogs), m_host(host), m_historyFile(std::move(historyFile))
{}

bool FileSession::CheckOtherInstance(const std::string& path)
{
    if (!m_instances)
        return true;
    std::optional<InstanceHandle> other =
        m_instances->FindInstanceWithDocument(kWindowClassName, path);
    if (!other)
        return true;
    ost::MessageBoxRequest box;
    box.title = "Warning";
    box.text = "The file is already open in another instance.";
    box.icon = ost::MessageIcon::Warning;
    box.buttons = ost::kButtonNone;
    box.extraButtons = {
        {"Switch to document",
         "Instead of reopening the document in this instance, switch to the other instance that "
         "already has the document open.",
         ost::kFirstExtraButtonId},
        {"Reopen document", "Open a second copy of the document in this instance.",
         ost::kFirstExtraButtonId + 1}};
    box.defaultButton = ost::kFirstExtraButtonId;
    const int answer = m_document.Ui().MessageBox(box);
    if (answer == ost::kFirstExtraButtonId) {
        m_instances->BringToForeground(*other);
        return false;
    }
    return answer == ost::kFirstExtraButtonId + 1;
}

bool FileSession::OpenPath(const std::string& path, char delimiter)
{
    FileFormat format;
    format.path = AbsolutePath(path);
    format.separator = delimiter;
    format.codePage = RememberedCodePage(m_history, format.path).value_or(ost::kCodePageSystem);
    return OpenWithFormat(format);
}

bool FileSession::OpenWithFormat(FileFormat format, const std::string& title)
{
    m_host.CommitCellEdit();
    if (!CheckOtherInstance(format.path))
        return false;
    StoreCurrentFileProperties();
    m_host.BeginTableReset();
    const bool loaded = LoadCsvFile(m_document, format, title);
    m_host.EndTableReset();
    if (loaded)
        AfterLoad();
    m_host.TableReplaced();
    return loaded;
}

void FileSession::AfterLoad()
{
    m_editing.Forget();
    m_frame.lastDocument = m_document.Path();
    m_frame.lastDirectory = std::filesystem::path(m_document.Path()).parent_path().string();
    if (m_frame.recordHistory) {
        m_history.Touch(m_document.Path());
        m_history.Trim();
    }
    Watch();
}

void FileSession::RestoreFileProperties(FileFormat& format)
{
    bool multiline = m_host.MultilineEditing();
    // A file seen before keeps the sort methods it had; a new one gets them from its cells.
    if (!quirnel::RestoreFileProperties(m_history, m_document, format, multiline))
        GuessSortMethods(m_document.Table());
    if (multiline != m_host.MultilineEditing())
        m_host.SetMultilineEditing(multiline);
}

void FileSession::StoreCurrentFileProperties()
{
    if (!m_document.FileOpen() || m_document.Path().empty() || !m_frame.recordHistory)
        return;
    quirnel::StoreFileProperties(m_history, m_document, m_host.MultilineEditing());
}

bool FileSession::Save()
{
    if (!m_document.FileOpen())
        return false;
    m_host.CommitCellEdit();
    std::string path = m_document.Path();
    if (path.empty() && !ChooseSavePath(path))
        return false;
    return SaveAs(path);
}

bool FileSession::ChooseSavePath(std::string& path)
{
    return m_dialogs.ChooseSavePath(m_frame.lastDirectory, path);
}

bool FileSession::SaveAs(const std::string& path)
{
    if (!m_document.FileOpen())
        return false;
    m_host.CommitCellEdit();
    if (!SaveCsvFile(m_document, AbsolutePath(path), "Save File"))
        return false;
    m_document.SetModified(false);
    m_frame.lastDocument = m_document.Path();
    if (m_frame.recordHistory) {
        StoreCurrentFileProperties();
        m_history.Save(m_historyFile);
    }
    Watch();
    m_host.FileStateChanged();
    return true;
}

bool FileSession::Release()
{
    m_host.CommitCellEdit();
    StoreCurrentFileProperties();
    // The view stays still while the document may save or drop its table.
    m_host.BeginTableReset();
    const bool released = m_document.QueryRelease();
    m_host.EndTableReset();
    return released;
}

bool FileSession::Close()
{
    if (!Release())
        return false;
    m_known.reset();
    m_host.WatchFile({});
    m_editing.Forget();
    m_host.TableReplaced();
    return true;
}

void FileSession::NewDocument(int encoding, char separator)
{
    m_host.BeginTableReset();
    m_document.Clear();
    m_editing.Forget();
    NewFileRequest request;
    request.encoding = encoding;
    request.separator = static_cast<unsigned char>(separator);
    m_document.StoreFormat(NewFileFormat(request));
    m_document.SetPath({});
    m_document.SetTextMode(encoding == 1);
    m_document.SetFileOpen(true);
    m_document.SetModified(false);
    m_host.EndTableReset();
    m_known.reset();
    m_host.WatchFile({});
    m_host.TableReplaced();
}

bool FileSession::RunNewFile()
{
    if (!Release()) {
        m_host.FileStateChanged();
        return false;
    }
    NewFileRequest request;
    request.encoding = m_prefs.defaultEncoding;
    if (!m_dialogs.NewFile(request)) {
        // The old table may be gone already (released without a save question).
        m_host.TableReplaced();
        return false;
    }
    NewDocument(request.encoding, static_cast<char>(request.separator));
    return m_document.FileOpen();
}

bool FileSession::RunOpenFile()
{
    std::string path;
    if (!m_dialogs.ChooseFileToOpen("Open File", true, m_frame.lastDirectory, path))
        return false;
    return OpenPath(path) && m_document.FileOpen();
}

void FileSession::RunOpenNonstandardFile()
{
    std::string chosen;
    if (!m_dialogs.ChooseFileToOpen("Open Nonstandard File", false, m_frame.lastDirectory, chosen))
        return;
    const std::string path = AbsolutePath(chosen);
    OpenNonstandardFileRequest request =
        MakeNonstandardRequest(RememberedCodePage(m_history, path).value_or(ost::kCodePageSystem));
    if (!m_dialogs.OpenNonstandardFile(request))
        return;
    OpenWithFormat(FormatFromRequest(request, path), "Open Nonstandard File");
}

void FileSession::RunSaveAs()
{
    if (!m_document.FileOpen())
        return;
    std::string path = m_document.Path();
    if (!ChooseSavePath(path))
        return;
    SaveAs(path);
}

void FileSession::OpenRecentFile(int position)
{
    const std::vector<std::string> paths = m_history.Paths();
    if (position < 0 || position >= static_cast<int>(paths.size()))
        return;
    // A copy: closing the current file rewrites the history the list came from.
    const std::string path = paths[static_cast<std::size_t>(position)];
    if (Close())
        OpenPath(path);
}

void FileSession::RunFileProperties()
{
    if (!m_document.FileOpen()) {
        m_document.Ui().Message("File Properties", kFilePropertiesRefusal, ost::MessageIcon::Error);
        return;
    }
    m_host.CommitCellEdit();
    FilePropertiesRequest request = MakeFilePropertiesRequest(m_document.Format());
    if (!m_dialogs.FileProperties(request))
        return;
    ApplyFileProperties(request);
}

void FileSession::SetCharacterSet(int position)
{
    const std::vector<LabelledValue> choices = CharacterSetChoices();
    if (!m_document.FileOpen() || position < 0 || position >= static_cast<int>(choices.size()))
        return;
    m_host.CommitCellEdit();
    FilePropertiesRequest request = MakeFilePropertiesRequest(m_document.Format());
    request.codePage =
        static_cast<std::uint32_t>(choices[static_cast<std::size_t>(position)].value);
    ApplyFileProperties(request);
}

void FileSession::ApplyFileProperties(const FilePropertiesRequest& request)
{
    FileFormat format = m_document.Format();
    const int mode =
        ApplyFilePropertiesRequest(request, format, m_document.TextMode(), m_document.Table());
    m_document.StoreFormat(format);
    m_document.SetTextMode(mode != 0);
    // A change of text mode rewrote every cell; the old texts (often the whole file as read)
    // would otherwise stay in memory until the file is closed.
    m_document.Table().CompactText();
    m_document.SetModified(true);
    m_host.TableReplaced();
}

std::optional<FileSession::FileStamp> FileSession::StampOf(const std::string& path)
{
    std::error_code error;
    FileStamp stamp;
    stamp.modified = std::filesystem::last_write_time(path, error);
    if (error)
        return std::nullopt;
    stamp.size = std::filesystem::file_size(path, error);
    if (error)
        return std::nullopt;
    return stamp;
}

void FileSession::Watch()
{
    const std::string& path = m_document.Path();
    m_known = path.empty() ? std::nullopt : StampOf(path);
    m_host.WatchFile(path);
}

void FileSession::FileChanged()
{
    const std::string path = m_document.Path();
    if (path.empty() || m_askingAboutChange)
        return;
    const std::optional<FileStamp> now = StampOf(path);
    // Programs that save by writing a new file and renaming it over ours end the watch on
    // the old file: watch the new one.
    if (now)
        m_host.WatchFile(path);
    if (!m_frame.detectChanges || !now || now == m_known)
        return;
    m_known = now;
    m_askingAboutChange = true;
    const int answer = m_document.Ui().Message(
        "Warning",
        "The file \"" + path +
            "\" has been changed by another program.\r\n\r\nDo you want to reopen it?",
        ost::MessageIcon::Question, ost::kButtonYes | ost::kButtonNo);
    m_askingAboutChange = false;
    if (answer != ost::kButtonYes)
        return;
    FileFormat format = m_document.Format();
    format.path = path;
    // The other program's version wins: the question above was the user's chance to keep ours.
    m_document.SetModified(false);
    OpenWithFormat(format);
}

std::string FileSession::MostRecentFile() const
{
    const std::vector<std::string> paths = m_history.Paths();
    if (!paths.empty())
        return paths.front();
    return m_frame.lastDocument;
}

void FileSession::AutoOpenLastFile(bool explicitStart)
{
    if (explicitStart || !m_frame.autoOpen || m_frame.lastDocument.empty())
        return;
    std::error_code error;
    if (!std::filesystem::exists(m_frame.lastDocument, error))
        return;
    OpenPath(m_frame.lastDocument);
}

} // namespace quirnel
