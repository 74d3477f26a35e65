#include "app/qt/main_window.h"

#include "app/command_ids.h"
#include "app/instance_protocol.h"
#include "editing/jump_to_row.h"
#include "app/qt/association_dialog.h"
#include "app/qt/file_dialogs.h"
#include "app/qt/instance_finder.h"
#include "editing/qt/jump_to_row_dialog.h"
#include "app/qt/main_window_commands.h"
#include "app/qt/preferences_dialog.h"
#include "app/qt/table_pane.h"
#include "app/qt/toolbar_widgets.h"
#include "document/csv_loader.h"
#include "document/csv_saver.h"
#include "document/file_properties.h"
#include "document/open_nonstandard_file.h"
#include "document/qt/open_nonstandard_file_dialog.h"
#include "ostrand/codepage/code_page.h"
#include "ostrand/settings/settings_exchange.h"
#include "ostrand/settings/settings_folder.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>
#include <QWindow>

#include <filesystem>

namespace quirnel {

namespace {

constexpr const char* kTableSection = "Table";

QString Q(const std::string& text)
{
    return QString::fromStdString(text);
}

std::string AbsolutePath(const std::string& path)
{
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return error ? path : absolute.lexically_normal().string();
}

/// The grid's view state goes to its own section of the settings file.
class SettingsViewStateStore : public ViewStateStore
{
public:
    explicit SettingsViewStateStore(ost::SettingsFile& file) : m_file(file) {}
    std::optional<std::string> ReadText(const std::string& key) override
    {
        return m_file.GetText(kTableSection, key);
    }
    void WriteText(const std::string& key, const std::string& value) override
    {
        m_file.SetText(kTableSection, key, value);
    }

private:
    ost::SettingsFile& m_file;
};

/// The commands this window carries out; the others show disabled until their handlers exist.
bool WindowHandles(int id)
{
    switch (id) {
    case cmd::kNewFile:
    case cmd::kOpenFile:
    case cmd::kOpenNonstandardFile:
    case cmd::kSaveFile:
    case cmd::kSaveFileAs:
    case cmd::kCloseFile:
    case cmd::kExit:
    case cmd::kFileProperties:
    case cmd::kExploreFolder:
    case cmd::kPreferences:
    case cmd::kCustomizeToolbar:
    case cmd::kDisplayToolbar:
    case cmd::kToggleBoundOption:
    case cmd::kMultilineEditingMode:
    case cmd::kMultilineEditingOption:
    case cmd::kWarningsVisible:
    case cmd::kDisplayWarnings:
    case cmd::kGoToWarning:
    case cmd::kDismissWarning:
    case cmd::kAssociateFileType:
    case cmd::kFilterEnabled:
    case cmd::kFilterText:
    case cmd::kFilterOptionChanged:
    case cmd::kRowMenu:
    case cmd::kColumnMenu:
    case cmd::kSortOnColumnMenu:
    case cmd::kCellMenu:
    case cmd::kCharacterSetMenu:
    case cmd::kBookmarkReturn:
    case cmd::kBookmarkSet:
    case cmd::kSelectAllRows:
    case cmd::kDeselectAllRows:
    case cmd::kJumpToRow:
    case cmd::kMaximizeColumnWidths:
    case cmd::kMinimizeColumnWidths:
    case cmd::kTableStatistics:
        return true;
    default:
        return (id >= cmd::kRecentFileBase && id <= cmd::kRecentFileLast) ||
               (id >= cmd::kCharacterSetBase && id <= cmd::kCharacterSetLast) ||
               (id >= cmd::kColumnAlignmentBase && id < cmd::kColumnAlignmentBase + 3) ||
               (id >= cmd::kSortMethodBase && id < cmd::kSortMethodBase + 6) ||
               id >= cmd::kSortOnColumnBase - 1;
    }
}

} // namespace

MainWindow::MainWindow(MainWindowOptions options, QWidget* parent)
    : QMainWindow(parent), m_options(std::move(options)), m_ui(this), m_document(m_ui)
{
    if (m_options.settingsFolder.empty())
        m_options.settingsFolder = ost::SettingsFolder();
    setObjectName(QStringLiteral("Quirnel Window Class"));
    setWindowTitle(QString::fromUtf16(Product().wideName));
    setAcceptDrops(true);
    m_document.SetHooks(this);
    m_document.Table().SetSettingsName("Table");
    m_document.Table().SetStyle(GRID_HIDE_COLUMNS | GRID_REMEMBER_WIDTHS | GRID_TAB_THRU);
    m_document.Table().AddObserver(this);

    BuildToolbar();
    BuildPanes();
    LoadSettings();
    ApplyPlacement();
    RefreshAll();
}

MainWindow::~MainWindow()
{
    m_document.Table().RemoveObserver(this);
    m_document.SetHooks(nullptr);
    // Members are destroyed before QWidget deletes the children, yet the grid, the toolbar and
    // the menus point into members (the table, the toolbar model, this host): they go first.
    delete m_splitter;
    m_splitter = nullptr;
    m_grid = nullptr;
    m_editor = nullptr;
    delete m_toolbar;
    m_toolbar = nullptr;
    DestroyCommandActions(m_actions);
    m_actions = nullptr;
}

// ---- building ----

void MainWindow::BuildToolbar()
{
    m_actions = CreateCommandActions(this, *this, [this]() -> QWidget* {
        if (m_multiline && m_editor)
            return m_editor;
        return m_grid ? m_grid->EditorWidget() : nullptr;
    });
    BuildMainToolbar(m_toolbarModel);
    m_toolbar = new MainToolbar(this, m_toolbarModel, *m_actions);

    m_filterCheck = new QCheckBox(QStringLiteral("Filter:"));
    m_filterCheck->setObjectName(QStringLiteral("Filter Enabled"));
    m_filterCheck->setToolTip(
        QStringLiteral("If checked, any row that doesn't contain the specified text is hidden."));
    m_filterText = new QLineEdit;
    m_filterText->setObjectName(QStringLiteral("Filter Text"));
    m_filterText->setToolTip(QStringLiteral("Any row that doesn't contain this text is hidden.  "
                                            "Press Enter to make the filter take effect."));
    m_filterText->setPlaceholderText(QStringLiteral("Filter"));
    m_filterText->setMaximumWidth(200);
    connect(m_filterCheck, &QCheckBox::clicked, this, [this] { OnCommand(cmd::kFilterEnabled); });
    connect(m_filterText, &QLineEdit::returnPressed, this, [this] { OnCommand(cmd::kFilterText); });
    m_toolbar->SetTrailingWidgets({m_filterCheck, m_filterText});
}

void MainWindow::BuildPanes()
{
    m_splitter = new QSplitter(Qt::Vertical, this);
    m_splitter->setObjectName(QStringLiteral("MultilineSplitter"));
    m_grid = new TablePane(m_document.Table(), m_splitter);
    m_grid->setObjectName(QStringLiteral("Table"));
    m_editor = new QPlainTextEdit(m_splitter);
    m_editor->setObjectName(QStringLiteral("Editor"));
    m_editor->setVisible(false);
    m_splitter->addWidget(m_grid);
    m_splitter->addWidget(m_editor);
    m_splitter->setStretchFactor(0, 3);
    m_splitter->setStretchFactor(1, 1);
    setCentralWidget(m_splitter);
    connect(m_grid, &TablePane::CurrentCellChanged, this, [this] { ShowCurrentCellInEditor(); });
    connect(m_grid, &TablePane::CellEdited, this, [this] { MarkModified(); });
    connect(m_grid, &TablePane::GridCommand, this,
            [this](int command, int, int row, int column) { OnGridCommand(command, row, column); });
    connect(m_editor, &QPlainTextEdit::textChanged, this, [this] {
        if (!m_loadingEditor && m_editorRow >= 0)
            CommitEditorText();
    });

    m_warningsDock = new QDockWidget(QStringLiteral("Warnings"), this);
    m_warningsDock->setObjectName(QStringLiteral("Warnings"));
    m_warningsDock->setFeatures(QDockWidget::NoDockWidgetFeatures);
    auto* holder = new QWidget(m_warningsDock);
    auto* layout = new QHBoxLayout(holder);
    layout->setContentsMargins(2, 2, 2, 2);
    m_warningsList = new QListWidget(holder);
    m_warningsList->setObjectName(QStringLiteral("WarningsList"));
    layout->addWidget(m_warningsList, 1);
    auto* buttons = new QVBoxLayout;
    struct WarningButton
    {
        const char* text;
        const char* tip;
        int id;
    };
    const WarningButton warningButtons[] = {
        {"Go", "Go to the row where the warning occurs.", cmd::kGoToWarning},
        {"Dismiss", "Delete this warning.", cmd::kDismissWarning},
        {"Hide", "Hide the warnings list.", cmd::kWarningsVisible},
    };
    for (const WarningButton& entry : warningButtons) {
        auto* button = new QPushButton(QString::fromUtf8(entry.text), holder);
        button->setObjectName(QString::fromUtf8(entry.text));
        button->setToolTip(QString::fromUtf8(entry.tip));
        const int id = entry.id;
        connect(button, &QPushButton::clicked, this, [this, id] { OnCommand(id); });
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    layout->addLayout(buttons);
    m_warningsDock->setWidget(holder);
    connect(m_warningsList, &QListWidget::itemDoubleClicked, this,
            [this] { OnCommand(cmd::kGoToWarning); });
    addDockWidget(Qt::BottomDockWidgetArea, m_warningsDock);
    // The list is a side note to the table: a few lines high unless the user drags it.
    resizeDocks({m_warningsDock}, {110}, Qt::Vertical);

    m_watcher = new QFileSystemWatcher(this);
    connect(m_watcher, &QFileSystemWatcher::fileChanged, this, [this] {
        // Editors that save by replacing the file end the watch; look again once it settled.
        QTimer::singleShot(200, this, [this] { OnFileChanged(); });
    });
}

// ---- settings ----

std::filesystem::path MainWindow::SettingsPath() const
{
    return m_options.settingsFolder / "quiredit.dat";
}

void MainWindow::LoadSettings()
{
    std::error_code error;
    std::filesystem::create_directories(m_options.settingsFolder, error);
    m_firstRun = m_settings.Load(SettingsPath()) == ost::SettingsLoadStatus::FirstRun;
    ost::SettingsExchange exchange(m_settings, ost::SettingsDirection::Read);
    ExchangePreferences(exchange, m_prefs);
    ExchangeDocumentFrame(exchange, m_frame);
    ExchangeWindowPlacement(exchange, m_placement);
    exchange.Section(kTableSection);
    int fontSize = m_fontSize;
    exchange.Int("FontSize", fontSize);
    m_fontSize = fontSize;
    m_toolbarModel.Exchange(exchange);
    SettingsViewStateStore viewState(m_settings);
    m_document.Table().LoadViewState(viewState);
    m_history.Load(m_options.settingsFolder / "filehistory.dat");
    m_toolbar->Rebuild();
    ApplyTableSettings();
}

bool MainWindow::SaveSettings()
{
    RememberPlacement();
    ost::SettingsExchange exchange(m_settings, ost::SettingsDirection::Write);
    ExchangePreferences(exchange, m_prefs);
    ExchangeDocumentFrame(exchange, m_frame);
    ExchangeWindowPlacement(exchange, m_placement);
    exchange.Section(kTableSection);
    exchange.Int("FontSize", m_fontSize);
    m_toolbarModel.Exchange(exchange);
    SettingsViewStateStore viewState(m_settings);
    m_document.Table().SaveViewState(viewState);
    bool ok = m_settings.Save(SettingsPath());
    if (m_frame.recordHistory)
        ok = m_history.Save(m_options.settingsFolder / "filehistory.dat") && ok;
    return ok;
}

void MainWindow::ApplyTableSettings()
{
    m_document.SetWarnTooFew(m_prefs.warnTooFew);
    m_document.SetBackupLevels(m_prefs.backupLevels);
    m_grid->SetIndexColumnHidden(m_prefs.hideIndexColumn);
    m_grid->SetFontSize(m_fontSize);
    m_grid->Refresh();
}

void MainWindow::ApplyPlacement()
{
    if (!m_placement.valid) {
        resize(900, 600);
        return;
    }
    QRect wanted(m_placement.left, m_placement.top, m_placement.width, m_placement.height);
    // A placement from a screen that is gone would put the window out of reach.
    bool visible = false;
    for (QScreen* screen : QGuiApplication::screens())
        visible = visible || screen->availableGeometry().intersects(wanted);
    if (visible)
        setGeometry(wanted);
    else
        resize(m_placement.width, m_placement.height);
    if (m_placement.maximized)
        setWindowState(windowState() | Qt::WindowMaximized);
}

void MainWindow::RememberPlacement()
{
    QRect normal = isMaximized() ? normalGeometry() : geometry();
    if (normal.width() <= 0 || normal.height() <= 0)
        return;
    m_placement = {true, normal.x(), normal.y(), normal.width(), normal.height(), isMaximized()};
}

// ---- instances ----

bool MainWindow::ListenForInstances()
{
    if (!m_server) {
        m_server =
            new InstanceServer([this](const std::u16string& path) { return HasDocument(path); },
                               [this] { Activate(); }, this);
    }
    return m_server->Listen(kWindowClassName);
}

bool MainWindow::HasDocument(const std::u16string& path) const
{
    if (!m_document.FileOpen() || m_document.Path().empty())
        return false;
    return IsSameDocument(path, Q(m_document.Path()).toStdU16String());
}

void MainWindow::Activate()
{
    if (isMinimized())
        setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    show();
    raise();
    activateWindow();
}

bool MainWindow::CheckOtherInstance(const std::string& path)
{
    if (!m_options.instances)
        return true;
    std::optional<InstanceHandle> other =
        m_options.instances->FindInstanceWithDocument(kWindowClassName, path);
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
    int answer = m_ui.MessageBox(box);
    if (answer == ost::kFirstExtraButtonId) {
        m_options.instances->BringToForeground(*other);
        return false;
    }
    return answer == ost::kFirstExtraButtonId + 1;
}

// ---- files ----

bool MainWindow::OpenPath(const std::string& path, char delimiter)
{
    FileFormat format;
    format.path = AbsolutePath(path);
    format.separator = delimiter;
    format.codePage = RememberedCodePage(m_history, format.path).value_or(ost::kCodePageSystem);
    return OpenWithFormat(format);
}

bool MainWindow::OpenWithFormat(FileFormat format, const std::string& title)
{
    CommitCellEdit();
    if (!CheckOtherInstance(format.path))
        return false;
    StoreCurrentFileProperties();
    m_grid->BeginReset();
    bool loaded = LoadCsvFile(m_document, format, title);
    m_grid->EndReset();
    if (loaded)
        AfterLoad();
    RefreshAll();
    return loaded;
}

void MainWindow::AfterLoad()
{
    ForgetBookmark();
    m_frame.lastDocument = m_document.Path();
    m_frame.lastDirectory = std::filesystem::path(m_document.Path()).parent_path().string();
    if (m_frame.recordHistory) {
        m_history.Touch(m_document.Path());
        m_history.Trim();
    }
    WatchFile();
    ApplyTableSettings();
    ShowCurrentCellInEditor();
}

void MainWindow::RestoreFileProperties(TableDocument& document, FileFormat& format)
{
    bool multiline = m_multiline;
    quirnel::RestoreFileProperties(m_history, document, format, multiline);
    if (multiline != m_multiline)
        SetMultilineMode(multiline);
}

void MainWindow::StoreCurrentFileProperties()
{
    if (!m_document.FileOpen() || m_document.Path().empty() || !m_frame.recordHistory)
        return;
    quirnel::StoreFileProperties(m_history, m_document, m_multiline);
}

bool MainWindow::Save()
{
    if (!m_document.FileOpen())
        return false;
    CommitCellEdit();
    std::string path = m_document.Path();
    if (path.empty() && !ChooseSavePath(path))
        return false;
    return SaveAs(path);
}

bool MainWindow::SaveAs(const std::string& path)
{
    if (!m_document.FileOpen())
        return false;
    CommitCellEdit();
    if (!SaveCsvFile(m_document, AbsolutePath(path), "Save File"))
        return false;
    m_document.SetModified(false);
    m_frame.lastDocument = m_document.Path();
    if (m_frame.recordHistory) {
        StoreCurrentFileProperties();
        m_history.Save(m_options.settingsFolder / "filehistory.dat");
    }
    WatchFile();
    RefreshAll();
    return true;
}

bool MainWindow::ReleaseDocument()
{
    CommitCellEdit();
    StoreCurrentFileProperties();
    // The grid stays still while the document may save or drop its table.
    m_grid->BeginReset();
    const bool released = m_document.QueryRelease();
    m_grid->EndReset();
    return released;
}

bool MainWindow::CloseDocument()
{
    if (!ReleaseDocument())
        return false;
    if (!m_watcher->files().isEmpty())
        m_watcher->removePaths(m_watcher->files());
    m_editorRow = m_editorColumn = -1;
    ForgetBookmark();
    RefreshAll();
    return true;
}

void MainWindow::NewDocument(int encoding, char separator)
{
    m_grid->BeginReset();
    m_document.Clear();
    ForgetBookmark();
    NewFileRequest request;
    request.encoding = encoding;
    request.separator = static_cast<unsigned char>(separator);
    m_document.StoreFormat(NewFileFormat(request));
    m_document.SetPath({});
    m_document.SetTextMode(encoding == 1);
    m_document.SetFileOpen(true);
    m_document.SetModified(false);
    m_grid->EndReset();
    RefreshAll();
}

bool MainWindow::ChooseSavePath(std::string& path)
{
    QString start = Q(m_frame.lastDirectory);
    QString chosen =
        QFileDialog::getSaveFileName(this, QStringLiteral("Save File As"), start,
                                     QStringLiteral("CSV files (*.csv);;All files (*)"));
    if (chosen.isEmpty())
        return false;
    path = chosen.toStdString();
    return true;
}

int MainWindow::ScreenWidth()
{
    QScreen* s = screen() ? screen() : QGuiApplication::primaryScreen();
    return s ? s->availableGeometry().width() : 1920;
}

int MainWindow::ViewWidth()
{
    return m_grid ? m_grid->View()->viewport()->width() : 0;
}

void MainWindow::WatchFile()
{
    if (!m_watcher->files().isEmpty())
        m_watcher->removePaths(m_watcher->files());
    if (m_document.Path().empty())
        return;
    QFileInfo info(Q(m_document.Path()));
    m_knownModified = info.lastModified();
    m_knownSize = info.size();
    m_watcher->addPath(info.absoluteFilePath());
}

void MainWindow::OnFileChanged()
{
    if (m_document.Path().empty() || m_askingAboutChange)
        return;
    QFileInfo info(Q(m_document.Path()));
    if (info.exists() && !m_watcher->files().contains(info.absoluteFilePath()))
        m_watcher->addPath(info.absoluteFilePath());
    if (!m_frame.detectChanges || !info.exists())
        return;
    if (info.lastModified() == m_knownModified && info.size() == m_knownSize)
        return;
    m_knownModified = info.lastModified();
    m_knownSize = info.size();
    m_askingAboutChange = true;
    int answer =
        m_ui.Message("Warning",
                     "The file \"" + m_document.Path() +
                         "\" has been changed by another program.\r\n\r\nDo you want to reopen it?",
                     ost::MessageIcon::Question, ost::kButtonYes | ost::kButtonNo);
    m_askingAboutChange = false;
    if (answer != ost::kButtonYes)
        return;
    FileFormat format = m_document.Format();
    format.path = m_document.Path();
    // The other program's version wins: the question above was the user's chance to keep ours.
    m_document.SetModified(false);
    OpenWithFormat(format);
}

// ---- the panes ----

void MainWindow::SetMultilineMode(bool on)
{
    if (!on)
        CommitEditorText();
    m_multiline = on;
    m_editor->setVisible(on);
    if (on)
        ShowCurrentCellInEditor();
    RefreshCommandStates(m_actions);
}

void MainWindow::SetWarningsVisible(bool on)
{
    m_warningsVisible = on;
    m_warningsDock->setVisible(on);
    RefreshCommandStates(m_actions);
}

void MainWindow::ShowCurrentCellInEditor()
{
    if (!m_editor)
        return;
    const TableControl& table = m_document.Table();
    m_editorRow = table.FocusRow();
    m_editorColumn = table.FocusColumn();
    m_loadingEditor = true;
    if (m_editorRow >= 0 && m_editorColumn >= 1) {
        QString text =
            m_document.IsUnicode()
                ? QString::fromStdU16String(
                      std::u16string(m_document.CellText16(m_editorRow, m_editorColumn)))
                : QString::fromUtf16(m_document.CellTextWide(m_editorRow, m_editorColumn).c_str());
        // Cells keep CR LF line ends; the editor works in LF.
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        m_editor->setPlainText(text);
        m_editor->setReadOnly(false);
    } else {
        m_editor->clear();
        m_editor->setReadOnly(true);
        m_editorRow = m_editorColumn = -1;
    }
    m_loadingEditor = false;
}

void MainWindow::CommitEditorText()
{
    if (m_editorRow < 0 || m_editorColumn < 1 || !m_document.FileOpen())
        return;
    QString text = m_editor->toPlainText();
    text.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    std::u16string wide = text.toStdU16String();
    if (m_document.IsUnicode()) {
        if (m_document.CellText16(m_editorRow, m_editorColumn) == wide)
            return;
        m_document.SetCellText16(m_editorRow, m_editorColumn, wide);
    } else {
        std::string narrow;
        ost::CodePageConverter converter(ost::kCodePageSystem);
        converter.FromUtf16(wide, narrow, '?');
        if (m_document.CellText8(m_editorRow, m_editorColumn) == narrow)
            return;
        m_document.SetCellText8(m_editorRow, m_editorColumn, narrow);
    }
    // Called on every keystroke: repaint the one cell rather than reset the whole view.
    m_grid->RepaintCell(m_editorRow, m_editorColumn);
    MarkModified();
}

void MainWindow::CommitCellEdit()
{
    if (m_grid)
        m_grid->CommitEdit();
    if (m_multiline)
        CommitEditorText();
}

void MainWindow::MarkModified()
{
    if (!m_document.FileOpen())
        return;
    if (!m_document.Modified()) {
        m_document.SetModified(true);
        RefreshCaption();
    }
    if (sender() == m_grid && m_multiline)
        ShowCurrentCellInEditor();
}

void MainWindow::WarningsChanged()
{
    RefreshWarnings();
}

void MainWindow::RefreshWarnings()
{
    m_warningsList->clear();
    for (const CSV_Warning& warning : m_document.Warnings()) {
        QString text = Q(warning.message);
        if (warning.row >= 0)
            text = QStringLiteral("Row %1: %2").arg(warning.row + 1).arg(text);
        m_warningsList->addItem(text);
    }
}

void MainWindow::OnGoToWarning()
{
    int index = m_warningsList->currentRow();
    if (index < 0 || index >= static_cast<int>(m_document.Warnings().size()))
        return;
    int row = m_document.Warnings()[static_cast<std::size_t>(index)].row;
    if (row < 0 || row >= m_document.RowCount())
        return;
    MoveFocusTo(row, std::max(1, m_document.Table().FocusColumn()));
}

void MainWindow::OnDismissWarning()
{
    int index = m_warningsList->currentRow();
    if (index < 0 || index >= static_cast<int>(m_document.Warnings().size()))
        return;
    std::vector<CSV_Warning> rest = m_document.Warnings();
    rest.erase(rest.begin() + index);
    m_document.ClearWarnings();
    for (CSV_Warning& warning : rest)
        m_document.AddWarning(std::move(warning.message), warning.row,
                              std::move(warning.extraData));
    RefreshWarnings();
    m_warningsList->setCurrentRow(std::min(index, m_warningsList->count() - 1));
}

QString MainWindow::Caption() const
{
    const QString product = QString::fromUtf16(Product().wideName);
    if (!m_document.FileOpen())
        return product;
    QString name;
    if (m_document.Path().empty())
        name = QStringLiteral("New file");
    else if (m_frame.fullPath)
        name = Q(m_document.Path());
    else
        name = QFileInfo(Q(m_document.Path())).fileName();
    if (m_document.Modified())
        name += QStringLiteral(" *");
    return name + QStringLiteral(" - ") + product;
}

void MainWindow::RefreshCaption()
{
    setWindowTitle(Caption());
}

void MainWindow::RefreshAll()
{
    RefreshCaption();
    RefreshWarnings();
    m_warningsDock->setVisible(m_warningsVisible);
    m_editor->setVisible(m_multiline);
    m_grid->Refresh();
    RefreshCommandStates(m_actions);
}

void MainWindow::OnTableReset()
{
    ShowCurrentCellInEditor();
}

// ---- commands ----

DocumentState MainWindow::CurrentState() const
{
    DocumentState state;
    const TableControl& table = m_document.Table();
    state.fileOpen = m_document.FileOpen();
    state.selectedRowCount = table.SelectedRowCount();
    state.columnCount = table.ColumnCount();
    state.currentColumn = table.FocusColumn();
    for (int c = 0; c < table.ColumnCount(); ++c)
        state.columnTitles.push_back(table.ColumnNameUtf8(c));
    state.sortColumn = table.SortColumn();
    if (state.currentColumn >= 0 && state.currentColumn < table.ColumnCount()) {
        Alignment alignment = table.ColumnAlignment(state.currentColumn);
        state.currentColumnAlignment = alignment == Alignment::Center  ? 1
                                       : alignment == Alignment::Right ? 2
                                                                       : 0;
        state.currentColumnSortMethod = table.Column(state.currentColumn).sortMethod;
    }
    state.multilineMode = m_multiline;
    state.warningsVisible = m_warningsVisible;
    state.toolbarShown = m_toolbarModel.Shown();
    state.copyRowsNoColumnNames = m_prefs.copyRowsNoColumnNames;
    state.warnTooFew = m_prefs.warnTooFew;
    state.filterCaseSensitive = m_prefs.filterCaseSensitive;
    state.filterWholeWord = m_prefs.filterWholeWord;
    state.helpAvailable = false;
    if (m_frame.recordHistory) {
        std::vector<std::string> paths = m_history.Paths();
        if (paths.size() > 9)
            paths.resize(9);
        state.recentFiles = paths;
    }
    for (const LabelledValue& choice : CharacterSetChoices())
        state.characterSets.push_back({choice.label, choice.value});
    state.currentCodePage = static_cast<int>(m_document.Format().codePage);
    state.hasHandler = [](int id) { return WindowHandles(id); };
    return state;
}

void MainWindow::SetOption(OptionBinding binding, bool value)
{
    if (bool* field = OptionField(binding, m_prefs))
        *field = value;
    if (binding == OptionBinding::WarnTooFew)
        m_document.SetWarnTooFew(value);
}

void MainWindow::OnCommand(int id)
{
    if (id >= cmd::kRecentFileBase && id <= cmd::kRecentFileLast) {
        std::vector<std::string> paths = m_history.Paths();
        auto position = static_cast<std::size_t>(id - cmd::kRecentFileBase);
        if (position < paths.size() && CloseDocument())
            OpenPath(paths[position]);
        return;
    }
    if (id >= cmd::kCharacterSetBase && id <= cmd::kCharacterSetLast) {
        OnCharacterSet(id - cmd::kCharacterSetBase);
        return;
    }
    int value = 0;
    if (ColumnAlignmentCommand(id, value)) {
        int column = m_document.Table().FocusColumn();
        if (column >= 1 && column < m_document.ColumnCount()) {
            m_document.Table().SetColumnAlignment(column, value == 1   ? Alignment::Center
                                                          : value == 2 ? Alignment::Right
                                                                       : Alignment::Left);
            m_grid->Refresh();
        }
        return;
    }
    if (ColumnSortMethodCommand(id, value)) {
        int column = m_document.Table().FocusColumn();
        if (column >= 0 && column < m_document.ColumnCount()) {
            m_document.Table().SetColumnSortMethod(column, value);
            if (m_document.Table().SortColumn() == column)
                m_document.Table().Sort();
            m_grid->Refresh();
        }
        return;
    }
    if (id >= cmd::kSortOnColumnBase - 1 && SortOnColumnCommand(id, value)) {
        CommitCellEdit();
        if (value < 0)
            m_document.Table().Unsort();
        else
            m_document.Table().SetSort(value, true);
        m_grid->Refresh();
        return;
    }

    switch (id) {
    case cmd::kNewFile:
        OnNewFile();
        break;
    case cmd::kOpenFile:
        OnOpenFile();
        break;
    case cmd::kOpenNonstandardFile:
        OnOpenNonstandardFile();
        break;
    case cmd::kSaveFile:
        Save();
        break;
    case cmd::kSaveFileAs:
        OnSaveFileAs();
        break;
    case cmd::kCloseFile:
        CloseDocument();
        break;
    case cmd::kExit:
        close();
        break;
    case cmd::kFileProperties:
        OnFileProperties();
        break;
    case cmd::kExploreFolder:
        OnExploreFolder();
        break;
    case cmd::kPreferences:
        OnPreferences();
        break;
    case cmd::kCustomizeToolbar:
        m_toolbar->ShowCustomizeDialog();
        break;
    case cmd::kDisplayToolbar:
        m_toolbar->ToggleShown();
        break;
    case cmd::kToggleBoundOption:
        // The bound boolean was flipped through SetOption already.
        RefreshCommandStates(m_actions);
        break;
    case cmd::kMultilineEditingMode:
    case cmd::kMultilineEditingOption:
        SetMultilineMode(!m_multiline);
        break;
    case cmd::kWarningsVisible:
    case cmd::kDisplayWarnings:
        SetWarningsVisible(!m_warningsVisible);
        break;
    case cmd::kGoToWarning:
        OnGoToWarning();
        break;
    case cmd::kDismissWarning:
        OnDismissWarning();
        break;
    case cmd::kAssociateFileType:
        OnAssociate();
        break;
    case cmd::kFilterEnabled:
        m_filterEnabled = m_filterCheck->isChecked();
        ApplyFilter();
        break;
    case cmd::kFilterText:
        m_filterEnabled = true;
        m_filterCheck->setChecked(true);
        ApplyFilter();
        break;
    case cmd::kFilterOptionChanged:
        ApplyFilter();
        break;
    case cmd::kBookmarkSet:
        OnBookmarkSet();
        break;
    case cmd::kBookmarkReturn:
        OnBookmarkReturn();
        break;
    case cmd::kSelectAllRows:
        m_document.Table().SelectAllRows();
        RefreshCommandStates(m_actions);
        break;
    case cmd::kDeselectAllRows:
        m_document.Table().DeselectAllRows();
        RefreshCommandStates(m_actions);
        break;
    case cmd::kJumpToRow:
        OnJumpToRow();
        break;
    case cmd::kMaximizeColumnWidths:
        // The control keeps each width between 20 pixels and half the view's width.
        m_document.Table().MaximizeAllColumns();
        break;
    case cmd::kMinimizeColumnWidths:
        m_document.Table().MinimizeAllColumns();
        break;
    case cmd::kTableStatistics:
        OnTableStatistics();
        break;
    case cmd::kRowMenu:
    case cmd::kColumnMenu:
    case cmd::kSortOnColumnMenu:
    case cmd::kCellMenu:
    case cmd::kCharacterSetMenu:
        // Popups are filled when they open; choosing the popup itself does nothing.
        break;
    default:
        statusBar()->showMessage(QStringLiteral("Unknown command %1").arg(id), 5000);
        qWarning("MainWindow::OnCommand: unknown command id %d", id);
        break;
    }
}

void MainWindow::OnGridCommand(int command, int row, int column)
{
    // Entries the window added carry its own ids; the control's own ones it could not carry
    // out itself map to the window's commands of the same meaning. Those whose handlers do
    // not exist yet are dropped here, as their menu-bar twins show disabled.
    int id = 0;
    if (command >= cmd::kToggleBoundOption) {
        id = command;
    } else {
        switch (static_cast<GridCommand>(command)) {
        case GridCommand::CopyCellText:
            if (row >= 0 && row < m_document.RowCount() && column >= 1 &&
                column < m_document.ColumnCount()) {
                QGuiApplication::clipboard()->setText(
                    QString::fromStdU16String(m_document.CellTextWide(row, column)));
            }
            return;
        case GridCommand::CopyColumn:
            id = cmd::kCopyColumn;
            break;
        case GridCommand::SearchColumn:
            id = cmd::kSearchColumn;
            break;
        case GridCommand::SearchColumnContinue:
            id = cmd::kSearchColumnContinue;
            break;
        case GridCommand::SetEntireColumn:
            id = cmd::kSetEntireColumn;
            break;
        case GridCommand::TrimColumnWhitespace:
            id = cmd::kTrimColumnWhitespace;
            break;
        case GridCommand::AddRow:
            id = cmd::kCreateRow;
            break;
        case GridCommand::DeleteRows:
            id = cmd::kDeleteRows;
            break;
        case GridCommand::DuplicateRow:
            id = cmd::kDuplicateRows;
            break;
        case GridCommand::MoveRowUp:
            id = cmd::kMoveRowUp;
            break;
        case GridCommand::MoveRowDown:
            id = cmd::kMoveRowDown;
            break;
        case GridCommand::BookmarkReturn:
            id = cmd::kBookmarkReturn;
            break;
        case GridCommand::BookmarkSet:
            id = cmd::kBookmarkSet;
            break;
        case GridCommand::JumpToRow:
            id = cmd::kJumpToRow;
            break;
        case GridCommand::Statistics:
            id = cmd::kTableStatistics;
            break;
        case GridCommand::ImportCsv:
            id = cmd::kImportCsvFile;
            break;
        case GridCommand::CheckAll:
        case GridCommand::UncheckAll:
        case GridCommand::ToggleAll:
        case GridCommand::PasteNewRows:
        case GridCommand::ResetColumn:
        case GridCommand::DeleteAllRows:
        case GridCommand::ExportCsv:
            // No handler yet; doing nothing beats pretending.
            return;
        default:
            // Sorting, widths, alignment and the like: the control changed itself.
            m_grid->Refresh();
            RefreshCommandStates(m_actions);
            return;
        }
    }
    if (WindowHandles(id))
        OnCommand(id);
}

bool MainWindow::RequireCurrentCell()
{
    const TableControl& table = m_document.Table();
    const int row = table.FocusRow();
    const int column = table.FocusColumn();
    if (row >= 0 && row < table.RowCount() && column >= 1 && column < table.ColumnCount())
        return true;
    m_ui.Message("Error", "Please select a cell first.", ost::MessageIcon::Error);
    return false;
}

void MainWindow::OnBookmarkSet()
{
    if (!RequireCurrentCell())
        return;
    m_bookmarkRow = m_document.Table().FocusRow();
    m_bookmarkColumn = m_document.Table().FocusColumn();
}

void MainWindow::OnBookmarkReturn()
{
    const TableControl& table = m_document.Table();
    // No bookmark, or its cell went away with deleted rows or columns, or the filter hides it:
    // there is nowhere to go, which is an impossible move rather than an error.
    if (m_bookmarkRow < 0 || m_bookmarkRow >= table.RowCount() || m_bookmarkColumn < 1 ||
        m_bookmarkColumn >= table.ColumnCount() || table.IsRowHidden(m_bookmarkRow)) {
        m_ui.Beep();
        return;
    }
    MoveFocusTo(m_bookmarkRow, m_bookmarkColumn);
}

void MainWindow::OnJumpToRow()
{
    CommitCellEdit();
    const TableControl& table = m_document.Table();
    JumpToRowRequest request = MakeJumpToRowRequest(table.FocusRow(), table.RowCount());
    std::string error;
    std::optional<int> row;
    if (request.rowCount < 1) {
        JumpToRowTarget(request, error);
    } else {
        JumpToRowDialog dialog(request, this);
        if (dialog.exec() != QDialog::Accepted)
            return;
        row = JumpToRowTarget(request, error);
        if (row && table.IsRowHidden(*row)) {
            error = JumpToHiddenRowMessage(*row);
            row.reset();
        }
    }
    if (!row) {
        m_ui.Message(kJumpToRowTitle, error, ost::MessageIcon::Error);
        return;
    }
    const int column = table.FocusColumn();
    MoveFocusTo(*row, column >= 1 && column < table.ColumnCount() ? column : 1);
}

void MainWindow::OnTableStatistics()
{
    CommitCellEdit();
    m_ui.Message(CommandLabel(cmd::kTableStatistics), m_document.Table().StatisticsReport(),
                 ost::MessageIcon::Information);
}

void MainWindow::MoveFocusTo(int row, int column)
{
    CommitCellEdit();
    m_document.Table().SetFocusCell(row, column);
    m_grid->ShowFocusCell();
    m_grid->setFocus();
    ShowCurrentCellInEditor();
    RefreshCommandStates(m_actions);
}

QString MainWindow::ChooseFileToOpen(const QString& title, bool csvFirst)
{
    const QString csv = QStringLiteral("CSV files (*.csv *.txt *.tsv)");
    const QString all = QStringLiteral("All files (*)");
    return QFileDialog::getOpenFileName(this, title, Q(m_frame.lastDirectory),
                                        csvFirst ? csv + QStringLiteral(";;") + all
                                                 : all + QStringLiteral(";;") + csv);
}

void MainWindow::OnOpenFile()
{
    const QString chosen = ChooseFileToOpen(QStringLiteral("Open File"), true);
    if (!chosen.isEmpty())
        OpenPath(chosen.toStdString());
}

void MainWindow::OnOpenNonstandardFile()
{
    const QString chosen = ChooseFileToOpen(QStringLiteral("Open Nonstandard File"), false);
    if (chosen.isEmpty())
        return;
    const std::string path = AbsolutePath(chosen.toStdString());
    OpenNonstandardFileRequest request =
        MakeNonstandardRequest(RememberedCodePage(m_history, path).value_or(ost::kCodePageSystem));
    QtDocumentDialogs dialogs(this);
    if (!dialogs.OpenNonstandardFile(request))
        return;
    OpenWithFormat(FormatFromRequest(request, path), "Open Nonstandard File");
}

void MainWindow::OnSaveFileAs()
{
    if (!m_document.FileOpen())
        return;
    std::string path = m_document.Path();
    if (!ChooseSavePath(path))
        return;
    SaveAs(path);
}

void MainWindow::OnNewFile()
{
    if (!ReleaseDocument()) {
        RefreshAll();
        return;
    }
    NewFileRequest request;
    request.encoding = m_prefs.defaultEncoding;
    NewFileDialog dialog(request, this);
    if (dialog.exec() != QDialog::Accepted) {
        RefreshAll();
        return;
    }
    NewDocument(request.encoding, static_cast<char>(request.separator));
    if (m_prefs.newFileLaunchesCreateColumn && CurrentState().hasHandler(cmd::kCreateColumn))
        OnCommand(cmd::kCreateColumn);
}

void MainWindow::OnFileProperties()
{
    if (!m_document.FileOpen()) {
        m_ui.Message("File Properties", kFilePropertiesRefusal, ost::MessageIcon::Error);
        return;
    }
    CommitCellEdit();
    FilePropertiesRequest request = MakeFilePropertiesRequest(m_document.Format());
    FilePropertiesDialog dialog(request, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    ApplyFileProperties(request);
}

void MainWindow::ApplyFileProperties(const FilePropertiesRequest& request)
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
    ShowCurrentCellInEditor();
    RefreshAll();
}

void MainWindow::OnCharacterSet(int position)
{
    std::vector<LabelledValue> choices = CharacterSetChoices();
    if (!m_document.FileOpen() || position < 0 || position >= static_cast<int>(choices.size()))
        return;
    CommitCellEdit();
    FilePropertiesRequest request = MakeFilePropertiesRequest(m_document.Format());
    request.codePage =
        static_cast<std::uint32_t>(choices[static_cast<std::size_t>(position)].value);
    ApplyFileProperties(request);
}

void MainWindow::OnExploreFolder()
{
    if (m_document.Path().empty())
        return;
    QString folder = QFileInfo(Q(m_document.Path())).absolutePath();
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}

void MainWindow::OnPreferences()
{
    TableControl& table = m_document.Table();
    PreferencesRequest request =
        MakePreferencesRequest(m_prefs, m_frame, table.AltRows(), table.Grid(), m_fontSize);
    PreferencesDialog dialog(request, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    ApplyPreferencesRequest(request, m_prefs, m_frame);
    table.SetAltRows(GridTriStateFromStored(request.altRows));
    table.SetGrid(GridTriStateFromStored(request.rowDividers));
    m_fontSize = request.fontSize;
    ApplyTableSettings();
    RefreshAll();
    SaveSettings();
}

void MainWindow::OnAssociate()
{
    if (!m_options.associations)
        return;
    for (;;) {
        AssociationDialog dialog(this);
        if (dialog.exec() != QDialog::Accepted)
            return;
        AssociateOptions options;
        options.asDefault = true;
        if (!AssociateExtension({dialog.Extension()}, options, *m_options.associations, m_ui,
                                m_options.programPath))
            return;
    }
}

void MainWindow::ApplyFilter()
{
    CommitCellEdit();
    TableControl& table = m_document.Table();
    const QString wanted = m_filterText->text();
    const bool active = m_filterEnabled && !wanted.isEmpty();
    const Qt::CaseSensitivity sensitivity =
        m_prefs.filterCaseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
    for (int row = 0; row < table.RowCount(); ++row) {
        bool keep = !active;
        for (int c = 1; !keep && c < table.ColumnCount(); ++c) {
            QString cell = m_document.IsUnicode()
                               ? QString::fromStdU16String(std::u16string(table.CellText16(row, c)))
                               : QString::fromUtf16(m_document.CellTextWide(row, c).c_str());
            if (m_prefs.filterWholeWord) {
                QRegularExpression word(
                    QStringLiteral("\\b%1\\b").arg(QRegularExpression::escape(wanted)),
                    sensitivity == Qt::CaseSensitive ? QRegularExpression::NoPatternOption
                                                     : QRegularExpression::CaseInsensitiveOption);
                keep = word.match(cell).hasMatch();
            } else {
                keep = cell.contains(wanted, sensitivity);
            }
        }
        table.SetRowHidden(row, !keep, true);
    }
    table.Redraw();
    m_grid->Refresh();
}

// ---- window events ----

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!ReleaseDocument()) {
        RefreshAll();
        event->ignore();
        return;
    }
    SaveSettings();
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.size() > 1) {
        m_ui.Message("Error", "Only one file can be dropped on the window caption.",
                     ost::MessageIcon::Error);
        return;
    }
    if (urls.size() == 1 && urls.front().isLocalFile()) {
        event->acceptProposedAction();
        QString path = urls.front().toLocalFile();
        QTimer::singleShot(0, this, [this, path] {
            if (CloseDocument())
                OpenPath(path.toStdString());
        });
    }
}

void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
}

// ---- start-up ----

std::string MainWindow::MostRecentFile() const
{
    std::vector<std::string> paths = m_history.Paths();
    if (!paths.empty())
        return paths.front();
    return m_frame.lastDocument;
}

void MainWindow::AutoOpenLastFile()
{
    if (m_explicitStart || !m_frame.autoOpen || m_frame.lastDocument.empty())
        return;
    if (!QFileInfo::exists(Q(m_frame.lastDocument)))
        return;
    OpenPath(m_frame.lastDocument);
}

} // namespace quirnel
