#include "app/qt/main_window.h"

#include "app/command_ids.h"
#include "app/instance_protocol.h"
#include "app/qt/association_dialog.h"
#include "app/qt/editor_pane.h"
#include "app/qt/filter_bar.h"
#include "app/qt/instance_finder.h"
#include "app/qt/main_window_commands.h"
#include "app/qt/preferences_dialog.h"
#include "app/qt/table_pane.h"
#include "app/qt/toolbar_widgets.h"
#include "app/qt/warnings_pane.h"
#include "document/file_properties.h"
#include "editing/print_table.h"
#include "editing/qt/qt_html_viewer.h"
#include "editing/row_drag.h"
#include "editing/row_filter.h"
#include "editing/table_commands.h"
#include "editing/warnings_commands.h"
#include "ostrand/settings/settings_exchange.h"
#include "ostrand/settings/settings_folder.h"
#include "ostrand/spell/hunspell_dictionary.h"
#include "ostrand/spell/spell_dictionary.h"
#include "view/qt/graph_window.h"
#include "view/qt/grid_view.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>

#include <random>

namespace quirnel {

namespace {

constexpr const char* kTableSection = "Table";

QString Q(const std::string& text)
{
    return QString::fromStdString(text);
}

MainWindowOptions WithSettingsFolder(MainWindowOptions options)
{
    if (options.settingsFolder.empty())
        options.settingsFolder = ost::SettingsFolder();
    return options;
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

/// Shuffles draw from a generator seeded once per window.
class SeededRandom : public RandomSource
{
public:
    std::uint64_t Next() override { return m_engine(); }

private:
    std::mt19937_64 m_engine{std::random_device{}()};
};

} // namespace

MainWindow::MainWindow(MainWindowOptions options, QWidget* parent)
    : QMainWindow(parent), m_options(WithSettingsFolder(std::move(options))), m_ui(this),
      m_document(m_ui), m_editingDialogs(this), m_fileDialogs(this),
      m_random(std::make_unique<SeededRandom>()),
      m_tools{m_document, m_ui,    m_editingDialogs, m_clipboard,
              *this,      m_prefs, *m_random,        m_editingState},
      m_router(*this, m_tools),
      m_session(m_document, m_history, m_frame, m_prefs, m_editingState, m_fileDialogs, *this,
                m_options.settingsFolder / "filehistory.dat")
{
    setObjectName(QStringLiteral("Quirnel Window Class"));
    setWindowTitle(QString::fromUtf16(Product().wideName));
    setAcceptDrops(true);
    m_session.SetInstances(m_options.instances);
    m_router.SetUnknownCommandReport([this](int id) {
        statusBar()->showMessage(QStringLiteral("Unknown command %1").arg(id), 5000);
        qWarning("MainWindow: unknown command id %d", id);
    });
    m_document.SetHooks(this);
    m_tableOwner.SetColumnSearchState(&m_editingState.columnSearch);
    m_document.Table().SetOwner(&m_tableOwner);
    m_document.Table().SetSettingsName("Table");
    m_document.Table().SetStyle(GRID_HIDE_COLUMNS | GRID_REMEMBER_WIDTHS | GRID_TAB_THRU);
    // "Paste new rows" in the heading menu, offered while the clipboard holds text.
    m_document.Table().SetStyle(m_document.Table().Style() | GRID_PASTE_NEW_ROWS);
    m_tableOwner.SetClipboard(&m_clipboard);
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
    m_document.Table().SetOwner(nullptr);
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

void MainWindow::BuildToolbar()
{
    m_actions = CreateCommandActions(this, *this, [this]() -> QWidget* {
        if (m_multiline && m_editor)
            return m_editor;
        return m_grid ? m_grid->EditorWidget() : nullptr;
    });
    BuildMainToolbar(m_toolbarModel);
    m_toolbar = new MainToolbar(this, m_toolbarModel, *m_actions);

    m_filter = new FilterBar(this);
    connect(m_filter, &FilterBar::CommandChosen, this, &MainWindow::OnCommand);
    m_toolbar->SetTrailingWidgets({m_filter->Check(), m_filter->Text()});
}

void MainWindow::BuildPanes()
{
    m_splitter = new QSplitter(Qt::Vertical, this);
    m_splitter->setObjectName(QStringLiteral("MultilineSplitter"));
    m_grid = new TablePane(m_document.Table(), m_splitter);
    m_grid->setObjectName(QStringLiteral("Table"));
    m_editor = new EditorPane(m_document, m_splitter);
    m_editor->setVisible(false);
    m_splitter->addWidget(m_grid);
    m_splitter->addWidget(m_editor);
    m_splitter->setStretchFactor(0, 3);
    m_splitter->setStretchFactor(1, 1);
    setCentralWidget(m_splitter);
    connect(m_grid, &TablePane::CurrentCellChanged, this, [this] { FollowFocusCell(); });
    connect(m_grid, &TablePane::CellEdited, this, [this] {
        if (m_busy)
            return;
        MarkModified();
        FollowFocusCell();
    });
    connect(m_grid, &TablePane::GridCommand, this,
            [this](int command, int argument, int row, int column) {
                m_router.DispatchGridCommand(command, argument, row, column);
                RefreshCommandStates(m_actions);
            });
    connect(m_grid, &TablePane::RowMenuRequested, this, &MainWindow::ShowRowMenu);
    // Rows dragged by the "#" column carry this process's id, so a drag from another instance
    // is not taken for one of ours.
    const auto dragSource = static_cast<std::uint64_t>(QCoreApplication::applicationPid());
    static_cast<GridView*>(m_grid->View())
        ->SetRowDrag(
            QString::fromUtf8(ost::kClipboardRowDrag.data(),
                              static_cast<qsizetype>(ost::kClipboardRowDrag.size())),
            [this, dragSource](int row) {
                const std::vector<int> rows = DraggedRows(m_tools, row);
                return rows.empty() ? QByteArray()
                                    : QByteArray::fromStdString(EncodeRowDrag({dragSource, rows}));
            },
            [this, dragSource](const QByteArray& dropped, int row) {
                const std::optional<RowDragPayload> payload = DecodeRowDrag(dropped.toStdString());
                if (!payload || payload->source != dragSource)
                    return;
                MoveRowsToCommand(m_tools, payload->rows, row);
                RefreshCommandStates(m_actions);
            });
    m_grid->SetGridCommandCheck(
        [this](int command) { return m_router.HandlesGridCommand(command); });
    connect(m_editor, &EditorPane::CellCommitted, this, [this](int row, int column) {
        // Called on every keystroke: repaint the one cell rather than reset the whole view.
        m_grid->RepaintCell(row, column);
        MarkModified();
    });

    m_warnings = new WarningsPane(m_document, this);
    connect(m_warnings, &WarningsPane::CommandChosen, this, &MainWindow::OnCommand);
    m_warnings->SetWindowHooks(
        [this](bool shown) {
            m_warnings->setVisible(shown);
            RefreshCommandStates(m_actions);
        },
        [this] { m_grid->setFocus(); });
    addDockWidget(Qt::BottomDockWidgetArea, m_warnings);
    // The list is a side note to the table: a few lines high unless the user drags it.
    resizeDocks({m_warnings}, {110}, Qt::Vertical);

    m_watcher = new QFileSystemWatcher(this);
    connect(m_watcher, &QFileSystemWatcher::fileChanged, this, [this] {
        // Editors that save by replacing the file end the watch; look again once it settled.
        QTimer::singleShot(200, this, [this] { m_session.FileChanged(); });
    });
}

QPlainTextEdit* MainWindow::Editor() const
{
    return m_editor;
}

QListWidget* MainWindow::WarningsList() const
{
    return m_warnings->List();
}

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
    m_history.Load(HistoryPath());
    m_toolbar->Rebuild();
    ApplyTableSettings();
    // A file that exists but cannot be read is left as it is (its store refuses to write over
    // it) and the program runs on defaults; the user hears of it once, here.
    if (m_settings.LoadStatus() == ost::SettingsLoadStatus::Unreadable)
        m_ui.Message("Warning",
                     ost::UnreadableSettingsMessage(SettingsPath(), m_settings.LoadError()),
                     ost::MessageIcon::Warning);
    if (m_history.LoadStatus() == ost::SettingsLoadStatus::Unreadable)
        m_ui.Message("Warning",
                     ost::UnreadableSettingsMessage(HistoryPath(), m_history.LoadError()),
                     ost::MessageIcon::Warning);
}

std::filesystem::path MainWindow::HistoryPath() const
{
    return m_options.settingsFolder / "filehistory.dat";
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
    // An unreadable file refuses to be written over; the user was told so when it was read.
    auto report = [this](const std::filesystem::path& path) {
        m_ui.Message("Warning", "The settings could not be saved to \"" + path.string() + "\".",
                     ost::MessageIcon::Warning);
    };
    bool ok = m_settings.Save(SettingsPath());
    if (!ok && m_settings.LoadStatus() != ost::SettingsLoadStatus::Unreadable)
        report(SettingsPath());
    if (m_frame.recordHistory && !m_history.Save(HistoryPath())) {
        ok = false;
        if (m_history.LoadStatus() != ost::SettingsLoadStatus::Unreadable)
            report(HistoryPath());
    }
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

void MainWindow::RestoreFileProperties(TableDocument&, FileFormat& format)
{
    m_session.RestoreFileProperties(format);
}

void MainWindow::WarningsChanged()
{
    m_warnings->Show(m_document.Warnings(), m_document.IsUnicode());
}

bool MainWindow::ChooseSavePath(std::string& path)
{
    return m_session.ChooseSavePath(path);
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

void MainWindow::BeginTableReset()
{
    // The pane's cell may not exist in the table that comes.
    m_editor->Forget();
    m_grid->BeginReset();
}

void MainWindow::EndTableReset()
{
    m_grid->EndReset();
}

void MainWindow::TableReplaced()
{
    ApplyTableSettings();
    m_editor->ShowFocusCell();
    RefreshAll();
}

void MainWindow::WatchFile(const std::string& path)
{
    if (!m_watcher->files().isEmpty())
        m_watcher->removePaths(m_watcher->files());
    if (!path.empty())
        m_watcher->addPath(QFileInfo(Q(path)).absoluteFilePath());
}

void MainWindow::SetMultilineEditing(bool on)
{
    // Called during a load: the pane's text belongs to the table that went, so it is not
    // committed as SetMultilineMode would.
    m_multiline = on;
    m_editor->setVisible(on);
    RefreshCommandStates(m_actions);
}

void MainWindow::SetMultilineMode(bool on)
{
    if (!on)
        m_editor->Commit();
    m_multiline = on;
    m_editor->setVisible(on);
    if (on)
        m_editor->ShowFocusCell();
    RefreshCommandStates(m_actions);
}

void MainWindow::SetWarningsVisible(bool on)
{
    quirnel::SetWarningsVisible(m_document, *m_warnings, m_warningsVisible, on);
}

void MainWindow::FollowFocusCell()
{
    if (!m_busy)
        m_editor->ShowFocusCell();
}

void MainWindow::OnTableReset()
{
    FollowFocusCell();
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
    m_warnings->Show(m_document.Warnings(), m_document.IsUnicode());
    // The pane shows only while a file is open, whatever the flag says.
    m_warnings->setVisible(m_warningsVisible && m_document.FileOpen());
    m_editor->setVisible(m_multiline);
    m_grid->Refresh();
    RefreshCommandStates(m_actions);
}

QMenu* MainWindow::BuildRowMenu(QWidget* parent)
{
    return quirnel::BuildRowMenu(m_actions, parent);
}

void MainWindow::ShowRowMenu(const QPoint& globalPosition)
{
    std::unique_ptr<QMenu> menu(BuildRowMenu(this));
    menu->exec(globalPosition);
}

void MainWindow::CommitCellEdit()
{
    if (m_grid)
        m_grid->CommitEdit();
    if (m_multiline && m_editor)
        m_editor->Commit();
}

void MainWindow::ShowFocusCell()
{
    m_grid->ShowFocusCell();
    m_editor->ShowFocusCell();
    RefreshCommandStates(m_actions);
}

void MainWindow::ReopenEditor()
{
    if (m_multiline)
        m_editor->ShowFocusCell();
}

void MainWindow::MarkModified()
{
    if (!m_document.FileOpen())
        return;
    // The change frame sets the flag itself before it calls here; the caption follows anyway.
    m_document.SetModified(true);
    RefreshCaption();
}

bool MainWindow::RunNewFile()
{
    return m_session.RunNewFile() && m_document.FileOpen();
}

bool MainWindow::OpenWithDefaultProgram(const std::string& path)
{
    return QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(path)));
}

std::unique_ptr<HtmlViewer> MainWindow::CreateHtmlViewer()
{
    return std::make_unique<QtHtmlViewer>();
}

void MainWindow::ShowGraph(const GraphChart& chart)
{
    std::error_code error;
    std::filesystem::create_directories(m_options.settingsFolder, error);
    auto* window = new GraphWindow(chart, m_options.settingsFolder / kGraphSettingsFile, m_ui,
                                   m_clipboard, this);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->show();
}

std::unique_ptr<ost::SpellDictionary> MainWindow::OpenSpellDictionary()
{
    return ost::OpenSystemDictionary(ost::UserLanguage(), ost::DefaultDictionaryFolders());
}

std::string MainWindow::PersonalWordListPath()
{
    std::error_code error;
    std::filesystem::create_directories(m_options.settingsFolder, error);
    // Kept as its own file so that the list survives a damaged or reset settings file.
    return (m_options.settingsFolder / "words.dic").string();
}

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
    state.hasHandler = [this](int id) { return m_router.Handles(id); };
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
    m_router.Dispatch(id);
    RefreshCommandStates(m_actions);
}

void MainWindow::NewFile()
{
    if (RunNewFile() && m_prefs.newFileLaunchesCreateColumn && m_router.Handles(cmd::kCreateColumn))
        m_router.Dispatch(cmd::kCreateColumn);
}

void MainWindow::RefreshStates()
{
    RefreshCommandStates(m_actions);
}

void MainWindow::RefreshTable()
{
    m_grid->Refresh();
    RefreshCommandStates(m_actions);
}

void MainWindow::CustomizeToolbar()
{
    m_toolbar->ShowCustomizeDialog();
}

void MainWindow::ToggleToolbar()
{
    m_toolbar->ToggleShown();
}

void MainWindow::GoToWarning()
{
    GoToWarningCommand(m_tools, *m_warnings);
}

void MainWindow::DismissWarning()
{
    DismissWarningCommand(m_tools, *m_warnings, m_warningsVisible);
}

void MainWindow::CopyWarningExtraData()
{
    CopyWarningExtraDataCommand(m_tools, *m_warnings);
}

void MainWindow::ExploreFolder()
{
    if (m_document.Path().empty())
        return;
    QString folder = QFileInfo(Q(m_document.Path())).absolutePath();
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}

void MainWindow::EditPreferences()
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

void MainWindow::AssociateFileType()
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

void MainWindow::FilterChanged(int id)
{
    const RowFilterSettings settings =
        m_filter->Settings(id, m_prefs.filterCaseSensitive, m_prefs.filterWholeWord);
    // An option changed while the filter is off: there is nothing to apply.
    if (id == cmd::kFilterOptionChanged && !settings.enabled)
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    ApplyRowFilter(m_tools, settings);
    QApplication::restoreOverrideCursor();
    RefreshCommandStates(m_actions);
}

void MainWindow::ShowCellMatch(int row, int column, int start, int length)
{
    m_document.Table().SetFocusCell(row, column);
    m_grid->ShowMatch(row, column, start, length);
    m_editor->ShowFocusCell();
    if (m_multiline)
        m_editor->SelectText(start, length);
    RefreshCommandStates(m_actions);
}

void MainWindow::EndMultilineEditing()
{
    if (m_multiline)
        SetMultilineMode(false);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!m_session.Release()) {
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
            if (m_session.Close())
                m_session.OpenPath(path.toStdString());
        });
    }
}

} // namespace quirnel
