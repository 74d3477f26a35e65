// The "Search" and "Search Column" dialogs fill their requests, and in the main window a
// search moves the focus to the match, the filter field hides rows and the filter options
// re-apply it.

#include "app/command_ids.h"
#include "app/qt/table_pane.h"
#include "editing/find_replace.h"
#include "editing/qt/search_dialogs.h"
#include "tests/gui/gui_test_support.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

using namespace quirnel;
using namespace quirnel::test;

class TstSearch : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WindowFolder> m_folder;

private slots:
    void init() { m_folder = std::make_unique<WindowFolder>(); }
    void cleanup() { m_folder.reset(); }

    void SearchDialogHoldsEveryControlAndFillsTheRequest()
    {
        SearchRequest request;
        request.options.searchText = u"é?";
        request.options.direction = SearchDirection::BackwardFromEnd;
        SearchDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Search"));
        QStringList boxes;
        for (const QCheckBox* box : dialog.findChildren<QCheckBox*>())
            boxes << box->text();
        QCOMPARE(boxes, (QStringList{"Replace occurrences with:", "Case sensitive", "Whole word",
                                     "Use ? wildcard", "Use * wildcard", "Prompt on replace",
                                     "Replace all"}));
        QStringList directions;
        for (int i = 0; i < dialog.Direction()->count(); ++i)
            directions << dialog.Direction()->itemText(i);
        QCOMPARE(directions, (QStringList{"Forward from here", "Forward from beginning",
                                          "Backward from here", "Backward from end"}));
        QCOMPARE(dialog.Direction()->currentIndex(), 3);
        QVERIFY(dialog.WholeWord()->toolTip().contains(
            QStringLiteral("In other words, a match is ignored if it occurs before or after a "
                           "letter, number, or underscore.")));
        QCOMPARE(dialog.SearchText()->objectName(), QStringLiteral("Search Text"));
        QCOMPARE(dialog.SearchText()->text(), QStringLiteral("é?"));
        // The replacement part follows its check box; OK needs a text.
        QVERIFY(!dialog.ReplaceText()->isEnabled());
        QVERIFY(!dialog.Prompt()->isEnabled());
        dialog.Replace()->setChecked(true);
        QVERIFY(dialog.ReplaceText()->isEnabled());
        QVERIFY(dialog.ReplaceAll()->isEnabled());
        QPushButton* ok = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
        dialog.SearchText()->clear();
        QVERIFY(!ok->isEnabled());

        dialog.SearchText()->setText(QStringLiteral("ж"));
        dialog.ReplaceText()->setText(QStringLiteral("z"));
        dialog.AnyRun()->setChecked(true);
        dialog.ReplaceAll()->setChecked(false);
        dialog.Direction()->setCurrentIndex(1);
        dialog.accept();
        QVERIFY(request.options.searchText == u"ж");
        QVERIFY(request.options.replaceText == u"z");
        QVERIFY(request.options.replace);
        QVERIFY(request.options.anyRun);
        QVERIFY(!request.options.replaceAll);
        QCOMPARE(request.options.direction, SearchDirection::ForwardFromBeginning);
    }

    void SearchColumnDialogAsksForTextAndTwoOptions()
    {
        SearchColumnRequest request;
        request.columnName = "name";
        request.text = u"old";
        SearchColumnDialog dialog(request);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Search Column"));
        QCOMPARE(dialog.Text()->text(), QStringLiteral("old"));
        dialog.Text()->setText(QStringLiteral("Ünï"));
        dialog.WholeWord()->setChecked(true);
        dialog.accept();
        QVERIFY(request.text == u"Ünï");
        QVERIFY(request.wholeWord);
        QVERIFY(!request.caseSensitive);
    }

    void FindMovesTheFocusToTheMatchAndNextGoesOn()
    {
        auto window = m_folder->OpenWindow("Name,Note\r\napple,x\r\npear,red apple\r\nplum,y\r\n");
        QVERIFY(window);
        window->Document().Table().SetFocusCell(0, 1);
        OnNextModal([](QWidget* modal) {
            auto* dialog = qobject_cast<SearchDialog*>(modal);
            QVERIFY(dialog);
            dialog->SearchText()->setText(QStringLiteral("APPLE"));
            dialog->Direction()->setCurrentIndex(1);
            dialog->accept();
        });
        window->OnCommand(cmd::kFind);
        QCOMPARE(window->Document().Table().FocusRow(), 0);
        window->OnCommand(cmd::kFindNext);
        QCOMPARE(window->Document().Table().FocusRow(), 1);
        QCOMPARE(window->Document().Table().FocusColumn(), 2);
        QCOMPARE(window->Grid()->View()->currentIndex().row(), 1);
        QVERIFY(!window->Document().Modified());
    }

    void InMultilineModeTheMatchIsSelectedInTheEditorPane()
    {
        auto window = m_folder->OpenWindow("Name\r\nx\r\nsnow p\u00c9ak\r\n");
        QVERIFY(window);
        window->SetMultilineMode(true);
        OnNextModal([](QWidget* modal) {
            auto* dialog = qobject_cast<SearchDialog*>(modal);
            QVERIFY(dialog);
            dialog->SearchText()->setText(QStringLiteral("péa"));
            dialog->accept();
        });
        window->OnCommand(cmd::kFind);
        QCOMPARE(window->Document().Table().FocusRow(), 1);
        QCOMPARE(window->Editor()->textCursor().selectedText(), QStringLiteral("pÉa"));
        QVERIFY(!window->Document().Modified());
    }

    void FilterOptionsReapplyOnlyWhileTheBoxIsChecked()
    {
        auto window = m_folder->OpenWindow("Name\r\nabc\r\nxABCx\r\nno\r\n");
        QVERIFY(window);
        auto* text = window->findChild<QLineEdit*>(QStringLiteral("Filter Text"));
        auto* box = window->findChild<QCheckBox*>(QStringLiteral("Filter Enabled"));
        QCOMPARE(box->text(), QStringLiteral("Filter:"));
        text->setText(QStringLiteral("abc"));
        QTest::keyClick(text, Qt::Key_Return);
        QCOMPARE(window->Document().Table().VisibleRowCount(), 2);
        window->SetOption(OptionBinding::FilterCaseSensitive, true);
        window->OnCommand(cmd::kFilterOptionChanged);
        QCOMPARE(window->Document().Table().VisibleRowCount(), 1);
        box->click();
        QCOMPARE(window->Document().Table().VisibleRowCount(), 3);
        window->SetOption(OptionBinding::FilterCaseSensitive, false);
        window->OnCommand(cmd::kFilterOptionChanged);
        QCOMPARE(window->Document().Table().VisibleRowCount(), 3);
        QVERIFY(!window->Document().Modified());
    }
};

QTEST_MAIN(TstSearch)
#include "tst_search.moc"
