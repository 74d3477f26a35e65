#pragma once
// The one top-level window: the "Table", "Editor" and "Warnings" panes, menus and toolbar, the
// open document with its file commands, the preferences and the settings file, and the
// command dispatcher.

#include "app/command_state.h"
#include "app/preferences.h"
#include "app/startup.h"
#include "app/toolbar_model.h"
#include "document/file_history.h"
#include "document/table_document.h"
#include "ostrand/qt/qt_user_interface.h"
#include "ostrand/settings/settings_file.h"

#include <QDateTime>
#include <QMainWindow>

#include <filesystem>
#include <memory>
#include <optional>

class QCheckBox;
class QDockWidget;
class QFileSystemWatcher;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QSplitter;

namespace quirnel {

class CommandActions;
class InstanceServer;
class MainToolbar;
class TablePane;
struct FilePropertiesRequest;

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
                   private TableControlObserver
{
    Q_OBJECT

public:
    explicit MainWindow(MainWindowOptions options, QWidget* parent = nullptr);
    ~MainWindow() override;

    // ---- CommandHost ----
    void OnCommand(int id) override;
    DocumentState CurrentState() const override;
    void SetOption(OptionBinding binding, bool value) override;

    // ---- DocumentHooks ----
    void CommitCellEdit() override;
    void RestoreFileProperties(TableDocument& document, FileFormat& format) override;
    void WarningsChanged() override;
    bool ChooseSavePath(std::string& path) override;
    int ScreenWidth() override;
    int ViewWidth() override;

    /// Opens a file as the Open command does after its file dialog. `delimiter` 0 detects.
    /// False when nothing was opened (refused, failed, or switched to another instance).
    bool OpenPath(const std::string& path, char delimiter = 0);
    /// As OpenPath, with a format chosen by the caller (Open Nonstandard File).
    bool OpenWithFormat(FileFormat format, const std::string& title = "Open File");
    bool Save();
    bool SaveAs(const std::string& path);
    /// False when the user kept the document (Cancel, failed save).
    bool CloseDocument();
    /// Sets up an empty document as the New File dialog does on OK.
    void NewDocument(int encoding, char separator);

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
    void AutoOpenLastFile();
    std::string MostRecentFile() const;

    TableDocument& Document() { return m_document; }
    ost::QtUserInterface& Ui() { return m_ui; }
    Preferences& Prefs() { return m_prefs; }
    DocumentFrameSettings& Frame() { return m_frame; }
    FileHistory& History() { return m_history; }
    TablePane* Grid() const { return m_grid; }
    QPlainTextEdit* Editor() const { return m_editor; }
    QListWidget* WarningsList() const { return m_warningsList; }
    bool MultilineMode() const { return m_multiline; }
    void SetMultilineMode(bool on);
    bool WarningsVisible() const { return m_warningsVisible; }
    void SetWarningsVisible(bool on);
    std::filesystem::path SettingsPath() const;
    /// The caption as shown: product, file name or full path, modified mark.
    QString Caption() const;
    /// The remembered cell (storage row, column); -1 when none.
    int BookmarkRow() const { return m_bookmarkRow; }
    int BookmarkColumn() const { return m_bookmarkColumn; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void BuildPanes();
    void BuildToolbar();
    void ApplyPlacement();
    void RememberPlacement();
    void ApplyTableSettings();
    void RefreshCaption();
    void RefreshAll();
    void RefreshWarnings();
    void ShowCurrentCellInEditor();
    void CommitEditorText();
    void MarkModified();
    void WatchFile();
    void OnFileChanged();
    void AfterLoad();
    void StoreCurrentFileProperties();

    /// Commits edits and asks the document to let go; false when the user kept it.
    bool ReleaseDocument();
    void OnOpenFile();
    /// The open-file dialog from the last folder; empty when cancelled.
    QString ChooseFileToOpen(const QString& title, bool csvFirst);
    void OnGridCommand(int command, int row, int column);
    void OnOpenNonstandardFile();
    void OnSaveFileAs();
    void OnNewFile();
    void OnFileProperties();
    void OnExploreFolder();
    void OnPreferences();
    void OnAssociate();
    void OnCharacterSet(int position);
    /// Stores the chosen format and converts the cells when the text mode changes.
    void ApplyFileProperties(const FilePropertiesRequest& request);
    void OnGoToWarning();
    void OnDismissWarning();
    /// True when a data cell has the focus; otherwise tells the user and returns false.
    bool RequireCurrentCell();
    void OnBookmarkSet();
    void OnBookmarkReturn();
    void OnJumpToRow();
    void OnTableStatistics();
    /// Moves the focus to the cell, shows it, and lets the Editor pane follow.
    void MoveFocusTo(int row, int column);
    void ForgetBookmark() { m_bookmarkRow = m_bookmarkColumn = -1; }
    void ApplyFilter();
    /// Asks whether to switch to another instance showing the path; true to go on opening.
    bool CheckOtherInstance(const std::string& path);
    void OnTableReset() override;

    MainWindowOptions m_options;
    ost::QtUserInterface m_ui;
    TableDocument m_document;
    Preferences m_prefs;
    DocumentFrameSettings m_frame;
    WindowPlacement m_placement;
    ost::SettingsFile m_settings;
    FileHistory m_history;
    ToolbarModel m_toolbarModel;
    bool m_firstRun = false;
    bool m_explicitStart = false;
    bool m_multiline = false;
    bool m_warningsVisible = true;
    bool m_filterEnabled = false;
    int m_fontSize = 0;
    bool m_loadingEditor = false;

    TablePane* m_grid = nullptr;
    QSplitter* m_splitter = nullptr;
    QPlainTextEdit* m_editor = nullptr;
    QDockWidget* m_warningsDock = nullptr;
    QListWidget* m_warningsList = nullptr;
    QCheckBox* m_filterCheck = nullptr;
    QLineEdit* m_filterText = nullptr;
    CommandActions* m_actions = nullptr;
    MainToolbar* m_toolbar = nullptr;
    QFileSystemWatcher* m_watcher = nullptr;
    InstanceServer* m_server = nullptr;
    /// What the file looked like when we last read or wrote it, to tell our own saves apart
    /// from another program's changes.
    QDateTime m_knownModified;
    qint64 m_knownSize = -1;
    bool m_askingAboutChange = false;
    /// Editor pane cell: storage row and column, -1 when none.
    int m_editorRow = -1;
    int m_editorColumn = -1;
    int m_bookmarkRow = -1;
    int m_bookmarkColumn = -1;
};

} // namespace quirnel
