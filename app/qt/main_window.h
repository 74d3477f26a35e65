#pragma once
// The one top-level window: it builds the "Table", "Editor" and "Warnings" panes, the menus
// and the toolbar, keeps the preferences and the settings file, and wires them to the core:
// every command id goes to the CommandRouter, the open file's life to the FileSession. The
// window carries out the few things only it can do for them (dialogs, panes, the toolbar).

#include "app/command_router.h"
#include "app/command_state.h"
#include "app/file_session.h"
#include "app/heading_menu.h"
#include "app/preferences.h"
#include "app/qt/file_dialogs.h"
#include "app/startup.h"
#include "app/toolbar_model.h"
#include "document/file_history.h"
#include "document/table_document.h"
#include "editing/qt/qt_editing_dialogs.h"
#include "editing/tool_context.h"
#include "ostrand/qt/qt_clipboard.h"
#include "ostrand/qt/qt_user_interface.h"
#include "ostrand/settings/settings_file.h"

#include <QMainWindow>

#include <filesystem>
#include <memory>

class QFileSystemWatcher;
class QListWidget;
class QMenu;
class QPlainTextEdit;
class QSplitter;

namespace quirnel {

class CommandActions;
class EditorPane;
class FilterBar;
class InstanceServer;
class MainToolbar;
class TablePane;
class WarningsPane;

struct MainWindowOptions
{
    /// Where "quiredit.dat" and the file history live; the user's settings folder by default.
    std::filesystem::path settingsFolder;
    /// Asks other instances before opening a document they show. Off in tests.
    InstanceFinder* instances = nullptr;
    /// Where associations are written (command 16176); none disables the command.
    AssociationStore* associations = nullptr;
    std::string programPath;
};

class MainWindow : public QMainWindow,
                   public CommandHost,
                   public DocumentHooks,
                   private TableControlObserver,
                   private ShellCommands,
                   private EditingHost,
                   private FileSessionHost
{
    Q_OBJECT

public:
    explicit MainWindow(MainWindowOptions options, QWidget* parent = nullptr);
    ~MainWindow() override;

    void OnCommand(int id) override;
    DocumentState CurrentState() const override;
    void SetOption(OptionBinding binding, bool value) override;

    /// Also EditingHost's and FileSessionHost's: one commit serves every caller.
    void CommitCellEdit() override;
    void RestoreFileProperties(TableDocument& document, FileFormat& format) override;
    void WarningsChanged() override;
    bool ChooseSavePath(std::string& path) override;
    int ScreenWidth() override;
    int ViewWidth() override;

    /// Opens a file as the Open command does after its file dialog. `delimiter` 0 detects.
    /// False when nothing was opened (refused, failed, or switched to another instance).
    bool OpenPath(const std::string& path, char delimiter = 0)
    {
        return m_session.OpenPath(path, delimiter);
    }
    bool Save() { return m_session.Save(); }
    bool SaveAs(const std::string& path) { return m_session.SaveAs(path); }
    /// False when the user kept the document (Cancel, failed save).
    bool CloseDocument() { return m_session.Close(); }

    /// Reads "quiredit.dat"; remembers whether it existed (first run).
    void LoadSettings();
    /// Writes every section; false when the file could not be written.
    bool SaveSettings();

    /// Brings the window to the foreground (asked by another instance).
    void Activate();
    /// True when this window shows that document (request 16011).
    bool HasDocument(const std::u16string& path) const;
    /// Starts answering other instances.
    bool ListenForInstances();

    bool IsFirstRun() const { return m_firstRun; }
    void SetExplicitStart(bool on) { m_explicitStart = on; }
    /// Reopens the last document when "Auto-open last file" is on and nothing was named.
    void AutoOpenLastFile() { m_session.AutoOpenLastFile(m_explicitStart); }
    std::string MostRecentFile() const { return m_session.MostRecentFile(); }

    TableDocument& Document() { return m_document; }
    FileSession& Session() { return m_session; }
    ost::QtUserInterface& Ui() { return m_ui; }
    Preferences& Prefs() { return m_prefs; }
    DocumentFrameSettings& Frame() { return m_frame; }
    FileHistory& History() { return m_history; }
    TablePane* Grid() const { return m_grid; }
    QPlainTextEdit* Editor() const;
    QListWidget* WarningsList() const;
    WarningsPane* Warnings() const { return m_warnings; }
    /// The grid's Row menu as a right click on a row number shows it; the caller owns it.
    QMenu* BuildRowMenu(QWidget* parent);
    bool MultilineMode() const { return m_multiline; }
    void SetMultilineMode(bool on);
    bool WarningsVisible() const { return m_warningsVisible; }
    void SetWarningsVisible(bool on);
    std::filesystem::path SettingsPath() const;
    /// "filehistory.dat" in the settings folder.
    std::filesystem::path HistoryPath() const;
    /// The caption as shown: product, file name or full path, modified mark.
    QString Caption() const;
    /// The remembered cell (storage row, column); -1 when none.
    int BookmarkRow() const { return m_editingState.bookmarkRow; }
    int BookmarkColumn() const { return m_editingState.bookmarkColumn; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    // The commands the router leaves to the window.
    void NewFile() override;
    void OpenFile() override { m_session.RunOpenFile(); }
    void OpenNonstandardFile() override { m_session.RunOpenNonstandardFile(); }
    void SaveFile() override { m_session.Save(); }
    void SaveFileAs() override { m_session.RunSaveAs(); }
    void CloseFile() override { m_session.Close(); }
    void Exit() override { close(); }
    void OpenRecentFile(int position) override { m_session.OpenRecentFile(position); }
    void FileProperties() override { m_session.RunFileProperties(); }
    void SetCharacterSet(int position) override { m_session.SetCharacterSet(position); }
    void ExploreFolder() override;
    void EditPreferences() override;
    void AssociateFileType() override;
    void CustomizeToolbar() override;
    void ToggleToolbar() override;
    void ToggleMultilineEditing() override { SetMultilineMode(!m_multiline); }
    void ToggleWarnings() override { SetWarningsVisible(!m_warningsVisible); }
    void GoToWarning() override;
    void DismissWarning() override;
    void CopyWarningExtraData() override;
    void FilterChanged(int id) override;
    void RefreshStates() override;
    void RefreshTable() override;

    // What the editing commands ask of the window.
    void SetBusy(bool busy) override { m_busy = busy; }
    void ShowFocusCell() override;
    bool MultilineEditing() const override { return m_multiline; }
    void ReopenEditor() override;
    void MarkModified() override;
    bool RunNewFile() override;
    bool RunOpenFile() override { return m_session.RunOpenFile(); }
    bool OpenWithDefaultProgram(const std::string& path) override;
    std::unique_ptr<HtmlViewer> CreateHtmlViewer() override;
    void ShowCellMatch(int row, int column, int start, int length) override;
    void EndMultilineEditing() override;
    void ShowGraph(const GraphChart& chart) override;
    std::unique_ptr<ost::SpellDictionary> OpenSpellDictionary() override;
    std::string PersonalWordListPath() override;

    // What the file session asks of the window.
    void BeginTableReset() override;
    void EndTableReset() override;
    void TableReplaced() override;
    void FileStateChanged() override { RefreshAll(); }
    void WatchFile(const std::string& path) override;
    void SetMultilineEditing(bool on) override;

    void OnTableReset() override;

    void BuildPanes();
    void BuildToolbar();
    void ApplyPlacement();
    void RememberPlacement();
    void ApplyTableSettings();
    void RefreshCaption();
    void RefreshAll();
    void ShowRowMenu(const QPoint& globalPosition);
    /// The Editor pane follows the grid's focus cell, unless a command is changing the table.
    void FollowFocusCell();

    MainWindowOptions m_options;
    ost::QtUserInterface m_ui;
    TableDocument m_document;
    Preferences m_prefs;
    DocumentFrameSettings m_frame;
    WindowPlacement m_placement;
    ost::SettingsFile m_settings;
    FileHistory m_history;
    ToolbarModel m_toolbarModel;
    ost::QtClipboard m_clipboard;
    QtEditingDialogs m_editingDialogs;
    QtFileSessionDialogs m_fileDialogs;
    std::unique_ptr<RandomSource> m_random;
    EditingState m_editingState;
    EditorTableOwner m_tableOwner;
    ToolContext m_tools;
    CommandRouter m_router;
    FileSession m_session;
    bool m_firstRun = false;
    bool m_explicitStart = false;
    bool m_multiline = false;
    bool m_warningsVisible = true;
    /// Set while a command changes the table: the grid's change notices are its own doing.
    bool m_busy = false;
    int m_fontSize = 0;

    TablePane* m_grid = nullptr;
    QSplitter* m_splitter = nullptr;
    EditorPane* m_editor = nullptr;
    WarningsPane* m_warnings = nullptr;
    FilterBar* m_filter = nullptr;
    CommandActions* m_actions = nullptr;
    MainToolbar* m_toolbar = nullptr;
    QFileSystemWatcher* m_watcher = nullptr;
    InstanceServer* m_server = nullptr;
};

} // namespace quirnel
