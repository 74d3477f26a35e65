// Menus, shortcuts and the toolbar built from the command table on a bare main window.

#include "app/command_ids.h"
#include "app/qt/command_actions.h"
#include "app/qt/toolbar_widgets.h"
#include "ostrand/settings/settings_exchange.h"
#include "ostrand/settings/settings_file.h"
#include "tests/gui/gui_test_support.h"
#include "view/table_control.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

#include <memory>

using namespace quirnel;
using namespace quirnel::test;

namespace {

class RecordingHost : public CommandHost
{
public:
    void OnCommand(int id) override
    {
        received.push_back(id);
        if (id == cmd::kDisplayToolbar && toolbar) {
            toolbar->ToggleShown();
        }
    }
    DocumentState CurrentState() const override
    {
        DocumentState copy = state;
        if (toolbar) {
            copy.toolbarShown = toolbar->Model().Shown();
        }
        return copy;
    }
    void SetOption(OptionBinding binding, bool value) override
    {
        if (bool* field = OptionField(binding, state))
            *field = value;
    }

    DocumentState state;
    std::vector<int> received;
    MainToolbar* toolbar = nullptr;
};

QStringList Texts(QMenu* menu)
{
    QStringList texts;
    for (QAction* action : menu->actions()) {
        if (!action->isVisible()) {
            continue;
        }
        texts << (action->isSeparator() ? QStringLiteral("-") : action->text());
    }
    return texts;
}

QMenu* Submenu(QMenu* menu, const QString& text)
{
    QAction* action = FindAction(menu, text, false);
    return action ? action->menu() : nullptr;
}

QAction* ActionWithText(QMenu* menu, const QString& text)
{
    return FindAction(menu, text, false);
}

void Open(QMenu* menu)
{
    emit menu->aboutToShow();
}

QAction* ToolbarActionFor(QToolBar* bar, int id)
{
    for (QAction* action : bar->actions()) {
        if (action->data().toInt() == id) {
            return action;
        }
    }
    return nullptr;
}

/// A bare main window whose menus report to a recording host.
struct Bare
{
    QMainWindow window;
    RecordingHost host;
    CommandActions actions{&window, host};

    bool Activate()
    {
        window.show();
        window.activateWindow();
        return QTest::qWaitForWindowActive(&window);
    }
};

} // namespace

class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    void menuBarCarriesTheExactTexts();
    void rowMenuFollowsTheSelectedRowCount();
    void sortOnColumnNeedsTwoColumns();
    void boundOptionFlipsItsBooleanAndSendsItsId();
    void shortcutReachesItsCommand();
    void shortcutOfACommandWithoutHandlerDoesNothing();
    void everyShortcutShownInAMenuWorks();
    void cellPopupShowsTheEditorsMenu();
    void toolbarShowsDefaultsAndItsContextMenu();
    void customisationSurvivesARestart();
    void resetRestoresTheRegisteredDefaults();
};

void TestCommands::menuBarCarriesTheExactTexts()
{
    Bare bare;
    auto& [window, host, actions] = bare;
    QStringList titles;
    for (QMenu* menu : actions.Menus()) {
        titles << menu->title();
    }
    QCOMPARE(titles,
             QStringList({"&File", "&Options", "C&ell", "&Column", "&Row", "T&able", "&Tools"}));
    QCOMPARE(window.menuBar()->actions().size(), 7);

    QMenu* file = actions.Menus()[0];
    host.state.recentFiles = {"/data/a.csv"};
    Open(file);
    QCOMPARE(Texts(file), QStringList({"&New file", "&Open file\tCtrl+O", "Open nonstandard file",
                                       "&Save file\tCtrl+S", "Save file &as", "&Close file", "-",
                                       "File properties", "Explore folder", "Export to HTML",
                                       "Print", "&1 /data/a.csv", "-", "E&xit\tCtrl+F4"}));
    // The other menus' texts are the model's, checked in full by its own tests.
    QCOMPARE(Texts(actions.Menus()[6]).size(), 10);
    QVERIFY(!ActionWithText(actions.Menus()[6], "Graph")->icon().isNull());

    // Choosing an entry sends its id.
    ActionWithText(actions.Menus()[5], "Jump to row")->trigger();
    QCOMPARE(host.received, std::vector<int>({11303}));
}

void TestCommands::rowMenuFollowsTheSelectedRowCount()
{
    Bare bare;
    auto& [window, host, actions] = bare;
    QMenu* row = actions.Menus()[4];

    host.state.selectedRowCount = 1;
    Open(row);
    QStringList texts = Texts(row);
    QVERIFY(texts.contains("Delete row\tAlt+Delete"));
    QVERIFY(texts.contains("Move row up\tAlt+PageUp"));
    QCOMPARE(texts.size(), 11);

    host.state.selectedRowCount = 2;
    Open(row);
    texts = Texts(row);
    QVERIFY(texts.contains("Delete rows\tAlt+Delete"));
    QVERIFY(texts.contains("Copy rows\tCtrl+Shift+C"));
    QVERIFY(!texts.contains("Delete row\tAlt+Delete"));
    QCOMPARE(texts.size(), 11);

    ActionWithText(row, "Delete rows\tAlt+Delete")->trigger();
    QCOMPARE(host.received, std::vector<int>({16160}));
}

void TestCommands::sortOnColumnNeedsTwoColumns()
{
    Bare bare;
    auto& [window, host, actions] = bare;
    QMenu* sort = Submenu(actions.Menus()[5], "Sort on column");
    QVERIFY(sort);

    host.state.columnCount = 1;
    host.state.columnTitles = {"#"};
    Open(sort);
    QVERIFY(sort->actions().isEmpty());

    host.state.columnCount = 3;
    host.state.columnTitles = {"#", "Name", "Price"};
    host.state.sortColumn = 2;
    Open(sort);
    QCOMPARE(Texts(sort), QStringList({"No sorting", "-", "Name", "Price"}));
    QVERIFY(!ActionWithText(sort, "No sorting")->isChecked());
    QVERIFY(ActionWithText(sort, "Price")->isChecked());

    ActionWithText(sort, "Name")->trigger();
    QCOMPARE(host.received, std::vector<int>({cmd::kSortOnColumnBase + 1}));
}

void TestCommands::boundOptionFlipsItsBooleanAndSendsItsId()
{
    Bare bare;
    auto& [window, host, actions] = bare;
    QMenu* options = actions.Menus()[1];
    Open(options);
    QAction* wholeWord = ActionWithText(options, "Filter: whole word");
    QVERIFY(wholeWord->isCheckable());
    QVERIFY(!wholeWord->isChecked());
    QVERIFY(ActionWithText(options, "Warn if too few columns")->isChecked());

    wholeWord->trigger();
    QVERIFY(host.state.filterWholeWord);
    QVERIFY(!host.state.filterCaseSensitive);
    QCOMPARE(host.received, std::vector<int>({16211}));
    Open(options);
    QVERIFY(wholeWord->isChecked());
    QVERIFY(!ActionWithText(options, "Filter: case sensitive")->isChecked());
}

void TestCommands::shortcutReachesItsCommand()
{
    Bare bare;
    auto& [window, host, actions] = bare;
    QVERIFY(bare.Activate());

    QTest::keyClick(&window, Qt::Key_F2, Qt::ShiftModifier);
    QTest::keyClick(&window, Qt::Key_PageUp, Qt::AltModifier);
    QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier);
    QTest::keyClick(&window, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier);
    QTest::keyClick(&window, Qt::Key_Return, Qt::ControlModifier);
    QTest::keyClick(&window, Qt::Key_O, Qt::ControlModifier);
    QCOMPARE(host.received, std::vector<int>({16209, 11299, 16182, 16217, 16161, 11374}));
}

void TestCommands::shortcutOfACommandWithoutHandlerDoesNothing()
{
    Bare bare;
    auto& [window, host, actions] = bare;
    host.state.hasHandler = [](int id) { return id != cmd::kFindNext; };
    QVERIFY(bare.Activate());

    QTest::keyClick(&window, Qt::Key_F2);
    QVERIFY(host.received.empty());
    Open(actions.Menus()[6]);
    QVERIFY(!ActionWithText(actions.Menus()[6], "Find/next\tF2")->isEnabled());
    QVERIFY(ActionWithText(actions.Menus()[6], "Find\tCtrl+F2")->isEnabled());
}

/// Every entry's shortcut text (the part after the tab) with the id the entry sends.
void CollectShortcuts(const std::vector<CommandMenuEntry>& entries,
                      std::vector<std::pair<QString, int>>& out)
{
    for (const CommandMenuEntry& entry : entries) {
        CollectShortcuts(entry.children, out);
        const std::size_t tab = entry.text.find('\t');
        if (entry.kind == MenuEntryKind::Command && tab != std::string::npos)
            out.emplace_back(QString::fromStdString(entry.text.substr(tab + 1)), entry.id);
    }
}

void TestCommands::everyShortcutShownInAMenuWorks()
{
    Bare bare;
    auto& [window, host, actions] = bare;
    QVERIFY(bare.Activate());

    std::vector<std::pair<QString, int>> shortcuts;
    for (const Menu& menu : MainMenuBar(false))
        CollectShortcuts(menu.entries, shortcuts);
    DocumentState state;
    state.fileOpen = true;
    state.columnCount = 3;
    state.currentColumn = 1;
    state.selectedRowCount = 2;
    for (int popup : {cmd::kRowMenu, cmd::kColumnMenu, cmd::kSortOnColumnMenu, cmd::kCellMenu})
        CollectShortcuts(OnInitPopup(popup, state), shortcuts);
    // The grid's own cell menu names its keys too; its entries carry the grid's commands.
    TableControl table;
    TableColumn column;
    column.headerText = "a";
    table.AddColumn(column);
    table.SetRowCount(2);
    const std::map<int, int> gridCommandIds = {
        {static_cast<int>(GridCommand::MoveRowUp), cmd::kMoveRowUp},
        {static_cast<int>(GridCommand::MoveRowDown), cmd::kMoveRowDown},
    };
    for (const MenuEntry& entry : table.CellMenu(0, 1)) {
        const std::size_t tab = entry.text.find('\t');
        if (tab == std::string::npos)
            continue;
        QVERIFY2(gridCommandIds.count(entry.command), entry.text.c_str());
        shortcuts.emplace_back(QString::fromStdString(entry.text.substr(tab + 1)),
                               gridCommandIds.at(entry.command));
    }
    QVERIFY(shortcuts.size() >= 20);
    for (const auto& [text, id] : shortcuts) {
        host.received.clear();
        // Menus spell the page keys out; Qt's own names for them are shorter.
        QString qtText = text;
        qtText.replace(QStringLiteral("PageUp"), QStringLiteral("PgUp"))
            .replace(QStringLiteral("PageDown"), QStringLiteral("PgDown"));
        const QKeySequence keys = QKeySequence::fromString(qtText);
        QVERIFY2(!keys.isEmpty(), qPrintable(text));
        const QKeyCombination combination = keys[0];
        QTest::keyClick(&window, combination.key(), combination.keyboardModifiers());
        QVERIFY2(host.received == std::vector<int>{id},
                 qPrintable(text + QStringLiteral(" should send %1").arg(id)));
    }
}

void TestCommands::cellPopupShowsTheEditorsMenu()
{
    Bare bare;
    auto& [window, host, actions] = bare;
    QMenu* cell = actions.Menus()[2];
    Open(cell);
    QVERIFY(cell->actions().isEmpty());

    QLineEdit editor;
    actions.SetCellEditorProvider([&editor] { return &editor; });
    Open(cell);
    QVERIFY(!cell->actions().isEmpty());
    Open(cell);
    QVERIFY(!cell->actions().isEmpty());
}

void TestCommands::toolbarShowsDefaultsAndItsContextMenu()
{
    Bare bare;
    auto& [window, host, actions] = bare;
    ToolbarModel model;
    BuildMainToolbar(model);
    MainToolbar toolbar(&window, model, actions);
    host.toolbar = &toolbar;
    auto* filter = new QLineEdit;
    toolbar.SetTrailingWidgets({filter});

    QToolBar* bar = toolbar.ToolBar();
    QAction* open = ToolbarActionFor(bar, 11374);
    QVERIFY(open);
    QCOMPARE(open->text(), QString("Open"));
    QCOMPARE(open->toolTip(), QString("Open an existing CSV file of your choosing. (Ctrl+O)"));
    QVERIFY(!ToolbarActionFor(bar, 16214));
    QCOMPARE(ToolbarActionFor(bar, 16163)->isCheckable(), true);
    QCOMPARE(bar->toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
    // The filter stays last.
    QCOMPARE(bar->widgetForAction(bar->actions().last()), filter);

    open->trigger();
    QCOMPARE(host.received, std::vector<int>({11374}));

    std::unique_ptr<QMenu> menu(toolbar.CreateContextMenu(nullptr));
    QCOMPARE(Texts(menu.get()), QStringList({"Display toolbar", "Customize toolbar", "Toolbar size",
                                             "Balloon help disabled"}));
    ActionWithText(Submenu(menu.get(), "Toolbar size"), "Large")->trigger();
    QCOMPARE(bar->iconSize(), QSize(32, 32));
    QCOMPARE(model.Size(), 32);
    ActionWithText(menu.get(), "Display toolbar")->trigger();
    QVERIFY(!model.Shown());
    QVERIFY(bar->isHidden());
}

void TestCommands::customisationSurvivesARestart()
{
    ost::SettingsFile settings;
    {
        Bare bare;
        ToolbarModel model;
        BuildMainToolbar(model);
        MainToolbar toolbar(&bare.window, model, bare.actions);

        CustomizeToolbarDialog dialog(model);
        QTreeWidget* list = dialog.List();
        QCOMPARE(list->headerItem()->text(2), QString("Last in Group"));
        QCOMPARE(list->headerItem()->toolTip(1), QString("If checked, the icon is visible"));
        const int graph = model.IndexOf(16214);
        const int open = model.IndexOf(11374);
        QCOMPARE(list->topLevelItem(graph)->text(0), QString("Graph"));
        list->topLevelItem(graph)->setCheckState(1, Qt::Checked);
        list->topLevelItem(open)->setCheckState(1, Qt::Unchecked);
        dialog.AppearanceBox()->setCurrentIndex(dialog.AppearanceBox()->findText("Icons Only"));
        dialog.SizeBox()->setCurrentIndex(dialog.SizeBox()->findText("Large"));
        model = dialog.Result();
        toolbar.Rebuild();
        QVERIFY(ToolbarActionFor(toolbar.ToolBar(), 16214));
        ost::SettingsExchange exchange(settings, ost::SettingsDirection::Write);
        model.Exchange(exchange);
    }
    Bare bare;
    auto& [window, host, actions] = bare;
    ToolbarModel model;
    BuildMainToolbar(model);
    ost::SettingsFile reread;
    reread.Parse(settings.Serialize());
    ost::SettingsExchange exchange(reread, ost::SettingsDirection::Read);
    model.Exchange(exchange);
    MainToolbar toolbar(&window, model, actions);
    QToolBar* bar = toolbar.ToolBar();
    QVERIFY(ToolbarActionFor(bar, 16214));
    QVERIFY(!ToolbarActionFor(bar, 11374));
    QVERIFY(ToolbarActionFor(bar, 11373));
    QCOMPARE(bar->toolButtonStyle(), Qt::ToolButtonIconOnly);
    QCOMPARE(bar->iconSize(), QSize(32, 32));
}

void TestCommands::resetRestoresTheRegisteredDefaults()
{
    ToolbarModel defaults;
    BuildMainToolbar(defaults);
    ToolbarModel changed = defaults;
    for (int i = 0; i < static_cast<int>(changed.Entries().size()); ++i) {
        changed.SetVisible(i, !changed.Entries()[static_cast<std::size_t>(i)].visible);
    }
    CustomizeToolbarDialog dialog(changed);
    QCOMPARE(dialog.ResetButton()->toolTip(),
             QString("Reset the toolbar configuration to the default."));
    QTest::mouseClick(dialog.ResetButton(), Qt::LeftButton);
    QCOMPARE(dialog.Result().CustomizationRecord(), defaults.CustomizationRecord());
}

QTEST_MAIN(TestCommands)
#include "tst_commands.moc"
