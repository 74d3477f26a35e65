// The main window over real files in a temporary folder: open, edit, save, reopen with the
// view restored; preferences through the settings file; File Properties conversions.

#include "app/command_ids.h"
#include "app/qt/main_window.h"
#include "app/qt/table_pane.h"
#include "tests/gui/gui_test_support.h"
#include "view/qt/grid_view.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>

using namespace quirnel;
using namespace quirnel::test;

/// Another instance that shows every file whose name starts with "shown".
class FakeInstances : public InstanceFinder
{
public:
    std::optional<InstanceHandle> FindInstanceWithDocument(const std::string&,
                                                           const std::string& path) override
    {
        if (QFileInfo(QString::fromStdString(path)).fileName().startsWith(QStringLiteral("shown")))
            return InstanceHandle("other");
        return std::nullopt;
    }
    void BringToForeground(const InstanceHandle& instance) override { raised.push_back(instance); }
    std::vector<InstanceHandle> raised;
};

class TestMainWindow : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WindowFolder> m_folder;

    QString Path(const QString& name) const { return m_folder->Path(name); }
    std::unique_ptr<MainWindow> NewWindow() const { return m_folder->NewWindow(); }
    std::unique_ptr<MainWindow> OpenWindow(const QByteArray& bytes, const char* name) const
    {
        return m_folder->OpenWindow(bytes, QString::fromUtf8(name));
    }

private slots:
    void init() { m_folder = std::make_unique<WindowFolder>(); }
    void cleanup() { m_folder.reset(); }

    void PanesAndToolbarControlsAreNamed()
    {
        auto window = NewWindow();
        QVERIFY(window->IsFirstRun());
        QCOMPARE(window->windowTitle(), QStringLiteral("Quirnel"));
        QVERIFY(window->findChild<TablePane*>(QStringLiteral("Table")));
        QVERIFY(window->findChild<QPlainTextEdit*>(QStringLiteral("Editor")));
        QVERIFY(window->findChild<QSplitter*>(QStringLiteral("MultilineSplitter")));
        QVERIFY(window->findChild<QDockWidget*>(QStringLiteral("Warnings")));
        for (auto [name, tip] : {std::pair{"Go", "Go to the row where the warning occurs."},
                                 {"Dismiss", "Delete this warning."},
                                 {"Hide", "Hide the warnings list."}}) {
            auto* button = window->findChild<QPushButton*>(QString::fromUtf8(name));
            QVERIFY2(button && button->toolTip() == QString::fromUtf8(tip), name);
        }
        QCOMPARE(window->findChild<QLineEdit*>(QStringLiteral("Filter Text"))->placeholderText(),
                 QStringLiteral("Filter"));
        // An id nobody handles is reported, not fatal.
        window->OnCommand(12345);
    }

    void OpenEditSaveReopenRestoresView()
    {
        const QString file = Path(QStringLiteral("sales.csv"));
        QVERIFY(WriteBytes(file, "Name,Amount,Note\r\nb,10,x\r\na,9,y\r\nd,100,z\r\nc,-1,w\r\n"));
        {
            auto window = NewWindow();
            QVERIFY(window->OpenPath(file.toStdString()));
            QCOMPARE(window->windowTitle(), QStringLiteral("sales.csv - Quirnel"));
            QCOMPARE(window->Document().ColumnCount(), 4);
            QVERIFY(window->Grid()->EditCell(0, 3, QStringLiteral("edited")));
            QVERIFY(window->Document().Modified());
            QCOMPARE(window->windowTitle(), QStringLiteral("sales.csv * - Quirnel"));

            TableControl& table = window->Document().Table();
            table.MutableColumn(3).width = 155;
            table.SetColumnSortMethod(2, kSortNumeric);
            table.SetColumnAlignment(2, Alignment::Right);
            table.SetSort(2, false);
            table.SetFocusCell(1, 3);
            QVERIFY(window->Save());
            QVERIFY(!window->Document().Modified());
            QVERIFY(ReadBytes(file).contains("b,10,edited\r\n"));
            window->close();
        }
        auto window = NewWindow();
        QVERIFY(!window->IsFirstRun());
        QVERIFY(window->OpenPath(file.toStdString()));
        TableControl& table = window->Document().Table();
        QCOMPARE(table.Column(3).width, 155);
        QCOMPARE(table.Column(2).sortMethod, kSortNumeric);
        QCOMPARE(table.ColumnAlignment(2), Alignment::Right);
        QCOMPARE(table.SortColumn(), 2);
        QVERIFY(!table.SortAscending());
        QCOMPARE(table.FocusRow(), 1);
        QCOMPARE(table.FocusColumn(), 3);
        // The view shows the numeric descending order: 100, 10, 9, -1.
        QAbstractItemModel* model = window->Grid()->View()->model();
        QCOMPARE(model->index(0, 2).data().toString(), QStringLiteral("100"));
        QCOMPARE(model->index(3, 2).data().toString(), QStringLiteral("-1"));
        QCOMPARE(window->Grid()->View()->currentIndex().column(), 3);
        bool found = false;
        for (int row = 0; row < window->Document().RowCount(); ++row)
            found = found || (CellText(*window, row, 1) == QStringLiteral("b") &&
                              CellText(*window, row, 3) == QStringLiteral("edited"));
        QVERIFY(found);
    }

    void UnreadableSettingsAreLeftAloneAndReportedOnce()
    {
        // A folder where the file should be cannot be read as one, even by root.
        QVERIFY(QDir().mkpath(Path(QStringLiteral("settings/quiredit.dat"))));
        SeenBox seen;
        RecordNextBox(seen);
        auto window = NewWindow();
        QTRY_COMPARE(seen.title, QStringLiteral("Warning"));
        QVERIFY2(seen.text.startsWith(QStringLiteral("The settings file \"") +
                                      Path(QStringLiteral("settings/quiredit.dat")) +
                                      QStringLiteral("\" could not be read.")),
                 qPrintable(seen.text));
        // Closing neither asks again nor replaces the folder by a settings file.
        QVERIFY(!window->SaveSettings());
        window.reset();
        QVERIFY(QFileInfo(Path(QStringLiteral("settings/quiredit.dat"))).isDir());
    }

    void FirstOpenGuessesSortMethodsAndRememberedOnesWin()
    {
        const QString file = Path(QStringLiteral("kinds.csv"));
        QVERIFY(WriteBytes(file, "Units,When,Size,Mixed\r\n12,2024-03-01,3 KB,7\r\n"
                                 "4,2024-03-02,1.5 MB,seven\r\n30,,12 bytes,\r\n"));
        {
            auto window = NewWindow();
            QVERIFY(window->OpenPath(file.toStdString()));
            TableControl& table = window->Document().Table();
            QCOMPARE(table.Column(1).sortMethod, kSortNumeric);
            QCOMPARE(table.Column(2).sortMethod, kSortDateTime);
            QCOMPARE(table.Column(3).sortMethod, kSortMemory);
            QCOMPARE(table.Column(4).sortMethod, kSortTextNoCase);
            // The user's own choice is what the file keeps from now on.
            table.SetColumnSortMethod(1, kSortTextCase);
            window->close();
        }
        auto window = NewWindow();
        QVERIFY(window->OpenPath(file.toStdString()));
        QCOMPARE(window->Document().Table().Column(1).sortMethod, kSortTextCase);
    }

    void PreferencesRoundTripThroughSettingsFile()
    {
        {
            auto window = NewWindow();
            OnNextModal([](QWidget* dialog) {
                QCOMPARE(dialog->windowTitle(), QStringLiteral("Preferences"));
                dialog->findChild<QLineEdit*>(QStringLiteral("Backup Levels"))
                    ->setText(QStringLiteral("-5"));
                dialog->findChild<QComboBox*>(QStringLiteral("Default Encoding"))
                    ->setCurrentIndex(1);
                dialog->findChild<QComboBox*>(QStringLiteral("Alternating Rows"))
                    ->setCurrentIndex(1); // "Enabled"
                static_cast<QDialog*>(dialog)->accept();
            });
            window->OnCommand(cmd::kPreferences);
            QCOMPARE(window->Prefs().backupLevels, 0);
            QCOMPARE(window->Document().Table().AltRows(), 1);
            window->Prefs().noConfirmDeleteRow = true;
            window->Frame().fullPath = true;
            QVERIFY(window->SaveSettings());
        }
        QByteArray text = ReadBytes(Path(QStringLiteral("settings/quiredit.dat")));
        QVERIFY(text.contains("DefaultEncdoing=i:1"));
        QVERIFY(text.contains("BackupLevels=i:0"));

        auto window = NewWindow();
        QVERIFY(!window->IsFirstRun());
        QCOMPARE(window->Prefs().backupLevels, 0);
        QCOMPARE(window->Prefs().defaultEncoding, 1);
        QVERIFY(window->Prefs().noConfirmDeleteRow);
        QVERIFY(window->Frame().fullPath);
        QCOMPARE(window->Document().Table().AltRows(), 1);

        const QString file = Path(QStringLiteral("p.csv"));
        QVERIFY(WriteBytes(file, "A\r\n1\r\n") && window->OpenPath(file.toStdString()));
        QCOMPARE(window->windowTitle(), file + QStringLiteral(" - Quirnel"));
    }

    void FilePropertiesToUtf8ConvertsAndSaveWritesMark()
    {
        auto window = OpenWindow("Wort\r\nGr\xc3\xbc\xc3\x9f"
                                 "e\r\n",
                                 "u.csv");
        QVERIFY(window);
        QCOMPARE(window->Document().TextMode(), 0);
        OnNextModal([](QWidget* dialog) {
            QCOMPARE(dialog->windowTitle(), QStringLiteral("File Properties"));
            auto* box = dialog->findChild<QComboBox*>(QStringLiteral("Character Set"));
            QCOMPARE(box->itemText(1), QStringLiteral("UTF-8 (Unicode)"));
            ChooseAndAccept(dialog, "Character Set", 65001);
        });
        window->OnCommand(cmd::kFileProperties);
        QCOMPARE(window->Document().TextMode(), 1);
        QVERIFY(window->Document().Table().CellIsWide(0, 1));
        QCOMPARE(CellText(*window, 0, 1), QStringLiteral("Gr\u00fc\u00dfe"));
        QVERIFY(window->Document().Modified());
        QVERIFY(window->Save());
        const QByteArray saved = ReadBytes(Path(QStringLiteral("u.csv")));
        QVERIFY(saved.startsWith("\xef\xbb\xbfWort\r\n"));
        QVERIFY(saved.contains("Gr\xc3\xbc\xc3\x9f"
                               "e"));
    }

    void CodePage1251FileReopensIn1251()
    {
        const QString file = Path(QStringLiteral("ru.csv"));
        const QByteArray privet("\xcf\xf0\xe8\xe2\xe5\xf2");
        QVERIFY(WriteBytes(file, "Name\r\n" + privet + "\r\n"));
        const QString expected = QStringLiteral("\u041f\u0440\u0438\u0432\u0435\u0442");
        {
            auto window = NewWindow();
            QVERIFY(window->OpenPath(file.toStdString()));
            OnNextModal([](QWidget* dialog) { ChooseAndAccept(dialog, "Character Set", 1251); });
            window->OnCommand(cmd::kFileProperties);
            QCOMPARE(CellText(*window, 0, 1), expected);
            QVERIFY(window->Save());
            QCOMPARE(ReadBytes(file), "Name\r\n" + privet + "\r\n");
            window->close();
        }
        auto window = NewWindow();
        QVERIFY(window->OpenPath(file.toStdString()));
        QCOMPARE(window->Document().Format().codePage, 1251u);
        QCOMPARE(CellText(*window, 0, 1), expected);
    }

    void FilePropertiesWithoutFileIsRefused()
    {
        auto window = NewWindow();
        SeenBox shown;
        RecordNextBox(shown);
        window->OnCommand(cmd::kFileProperties);
        QCOMPARE(shown.text,
                 QStringLiteral(
                     "You must first open the file that you wish to edit the properties for."));
        QVERIFY(!window->Document().FileOpen());
    }

    void MultilineEditorCommitsIntoTheCell()
    {
        auto window = OpenWindow("A,B\r\n1,2\r\n", "m.csv");
        QVERIFY(window);
        window->Document().Table().SetFocusCell(0, 2);
        window->Grid()->ShowFocusCell();
        window->OnCommand(cmd::kMultilineEditingMode);
        QVERIFY(window->MultilineMode());
        QVERIFY(!window->Editor()->isHidden());
        QCOMPARE(window->Editor()->toPlainText(), QStringLiteral("2"));
        window->Editor()->setPlainText(QStringLiteral("two\nlines"));
        QVERIFY(window->Document().Modified());
        QCOMPARE(CellText(*window, 0, 2), QStringLiteral("two\r\nlines"));
        window->OnCommand(cmd::kMultilineEditingMode);
        QVERIFY(window->Editor()->isHidden());
    }

    void NewFileSetsUpAnEmptyDocument()
    {
        auto window = NewWindow();
        window->Prefs().newFileLaunchesCreateColumn = false;
        window->Prefs().defaultEncoding = 1;
        OnNextModal([](QWidget* dialog) {
            QCOMPARE(dialog->windowTitle(), QStringLiteral("New File"));
            QCOMPARE(dialog->findChild<QComboBox*>(QStringLiteral("Encoding"))->currentIndex(), 1);
            ChooseAndAccept(dialog, "Separator", 59);
        });
        window->OnCommand(cmd::kNewFile);
        QVERIFY(window->Document().FileOpen());
        QCOMPARE(window->Document().TextMode(), 1);
        QCOMPARE(window->Document().Format().codePage, 0u);
        QCOMPARE(window->Document().Separator(), ';');
        QVERIFY(!window->Document().Modified());
    }

    void ExternalChangeAsksAndReopens()
    {
        const QString file = Path(QStringLiteral("x.csv"));
        auto window = OpenWindow("A\r\nold\r\n", "x.csv");
        QVERIFY(window && window->Frame().detectChanges);
        QString asked;
        OnNextModal([&asked](QWidget* widget) {
            auto* box = static_cast<QMessageBox*>(widget);
            asked = box->text();
            box->button(QMessageBox::Yes)->click();
        });
        QVERIFY(WriteBytes(file, "A\r\nchanged elsewhere\r\n"));
        QTRY_VERIFY_WITH_TIMEOUT(CellText(*window, 0, 1) == QStringLiteral("changed elsewhere"),
                                 5000);
        QCOMPARE(asked, QStringLiteral("The file \"") + file +
                            // The box shows the text's CR LF as plain line breaks.
                            QStringLiteral("\" has been changed by another program.\n\n"
                                           "Do you want to reopen it?"));
        QVERIFY(!window->Document().Modified());
    }

    void FilterTextHidesRowsWithoutIt()
    {
        auto window = OpenWindow("Name\r\napple\r\npear\r\nPineapple\r\n", "f.csv");
        QVERIFY(window);
        auto* text = window->findChild<QLineEdit*>(QStringLiteral("Filter Text"));
        text->setText(QStringLiteral("apple"));
        QTest::keyClick(text, Qt::Key_Return);
        QVERIFY(window->findChild<QCheckBox*>(QStringLiteral("Filter Enabled"))->isChecked());
        QCOMPARE(window->Document().Table().VisibleRowCount(), 2);
        QCOMPARE(window->Grid()->View()->model()->rowCount(), 2);
    }

    void DocumentShownElsewhereAsksSwitchOrReopen()
    {
        const QString file = Path(QStringLiteral("shown.csv"));
        QVERIFY(WriteBytes(file, "A\r\n1\r\n"));
        FakeInstances instances;
        MainWindowOptions options = m_folder->Options();
        options.instances = &instances;
        MainWindow window(options);

        QString text;
        QStringList buttons;
        auto press = [&text, &buttons](const QString& which) {
            OnNextModal([&text, &buttons, which](QWidget* widget) {
                auto* box = static_cast<QMessageBox*>(widget);
                text = box->text();
                buttons.clear();
                for (QAbstractButton* button : box->buttons())
                    buttons << button->text();
                for (QAbstractButton* button : box->buttons())
                    if (button->text() == which)
                        button->click();
            });
        };
        press(QStringLiteral("Switch to document"));
        QVERIFY(!window.OpenPath(file.toStdString()));
        QCOMPARE(text, QStringLiteral("The file is already open in another instance."));
        QVERIFY(buttons.contains(QStringLiteral("Switch to document")));
        QVERIFY(buttons.contains(QStringLiteral("Reopen document")));
        QCOMPARE(instances.raised, std::vector<InstanceHandle>{"other"});
        QVERIFY(!window.Document().FileOpen());

        press(QStringLiteral("Reopen document"));
        QVERIFY(window.OpenPath(file.toStdString()));
        QVERIFY(window.Document().FileOpen());
        QCOMPARE(instances.raised.size(), std::size_t(1));
    }

    void PlacementRecentFilesAndLastFileSurviveRestart()
    {
        const QString first = Path(QStringLiteral("one.csv"));
        const QString second = Path(QStringLiteral("two.csv"));
        QVERIFY(WriteBytes(first, "A\r\n1\r\n") && WriteBytes(second, "B\r\n2\r\n"));
        {
            auto window = NewWindow();
            window->setGeometry(40, 50, 640, 480);
            window->Frame().autoOpen = true;
            QVERIFY(window->OpenPath(first.toStdString()));
            QVERIFY(window->OpenPath(second.toStdString()));
            window->close();
        }
        QVERIFY(ReadBytes(Path(QStringLiteral("settings/quiredit.dat")))
                    .contains("WindowPos=s:40,50,640,480,0"));
        {
            auto window = NewWindow();
            QCOMPARE(window->geometry().size(), QSize(640, 480));
            const DocumentState state = window->CurrentState();
            QCOMPARE(state.recentFiles,
                     (std::vector<std::string>{second.toStdString(), first.toStdString()}));
            QCOMPARE(window->MostRecentFile(), second.toStdString());
            window->AutoOpenLastFile();
            QCOMPARE(window->Document().Path(), second.toStdString());
            QVERIFY(state.hasHandler(cmd::kRecentFileBase + 1));
            window->OnCommand(cmd::kRecentFileBase + 1);
            QCOMPARE(window->Document().Path(), first.toStdString());
            window->close();
        }
        // Started with a file of its own, the window leaves the last one alone.
        auto window = NewWindow();
        window->SetExplicitStart(true);
        window->AutoOpenLastFile();
        QVERIFY(!window->Document().FileOpen());
    }

    // Both menu families used to share a record name; the grid's menus crashed the editor.
    void GridMenusAndTheMenuBarLiveTogether()
    {
        auto window = OpenWindow("A,B\r\n1,2\r\n3,4\r\n", "g.csv");
        QVERIFY(window);
        auto* grid = static_cast<quirnel::GridView*>(window->Grid()->View());
        std::unique_ptr<QMenu> header(grid->BuildHeaderMenu(1, window.get()));
        std::unique_ptr<QMenu> cell(grid->BuildCellMenu(0, 1, window.get()));
        QVERIFY(!header->actions().isEmpty());
        QVERIFY(!cell->actions().isEmpty());
        QVERIFY(!window->menuBar()->actions().isEmpty());
        QCOMPARE(window->menuBar()->actions().front()->text(), QStringLiteral("&File"));
    }

    void LoadWarningsAreListed()
    {
        auto window = OpenWindow("A,B\r\n1,2,3\r\n4,5\r\n", "w.csv");
        QVERIFY(window);
        QVERIFY(!window->Document().Warnings().empty());
        QCOMPARE(window->WarningsList()->count(),
                 static_cast<int>(window->Document().Warnings().size()));
        window->OnCommand(cmd::kWarningsVisible);
        QVERIFY(!window->WarningsVisible());
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_main_window.moc"
