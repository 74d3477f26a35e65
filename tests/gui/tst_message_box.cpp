#include "ostrand/qt/qt_user_interface.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <functional>

namespace {

/// What the test saw in the box; compared after the box has closed so that a failed
/// comparison can never leave a modal loop running.
struct Seen
{
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QStringList standardTexts;
    QStringList extraCaptions;
    QStringList extraTips;
    QString defaultText;
    QString checkBoxText;
    bool checkBoxChecked = false;
};

/// Runs `act` on the message box as soon as it is the active modal widget.
void WhenBoxOpens(std::function<void(QMessageBox*)> act)
{
    QTimer::singleShot(0, [act]() {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box) {
            WhenBoxOpens(act);
            return;
        }
        act(box);
    });
}

Seen Inspect(QMessageBox* box)
{
    Seen seen;
    seen.title = box->windowTitle();
    seen.text = box->text();
    seen.icon = box->icon();
    for (QAbstractButton* button : box->buttons()) {
        if (box->buttonRole(button) == QMessageBox::ActionRole) {
            seen.extraCaptions << button->text();
            seen.extraTips << button->toolTip();
        } else {
            seen.standardTexts << button->text();
        }
    }
    if (box->defaultButton())
        seen.defaultText = box->defaultButton()->text();
    if (box->checkBox()) {
        seen.checkBoxText = box->checkBox()->text();
        seen.checkBoxChecked = box->checkBox()->isChecked();
    }
    return seen;
}

QAbstractButton* ButtonWithText(QMessageBox* box, const QString& text)
{
    for (QAbstractButton* button : box->buttons())
        if (button->text() == text)
            return button;
    return nullptr;
}

} // namespace

class TestMessageBox : public QObject
{
    Q_OBJECT

private slots:
    void showsTitleTextAndIcon();
    void extraButtonsShowCaptionsAndTips();
    void checkBoxWritesTheAnswer();
    void escapeAnswersCancel();
    void progressCancelStopsTheWork();
};

void TestMessageBox::showsTitleTextAndIcon()
{
    ost::QtUserInterface ui;
    ost::MessageBoxRequest request;
    request.title = "Delete Row";
    request.text = "Are you sure that you want to delete row 3?\r\n\r\n<b>not bold</b>";
    request.icon = ost::MessageIcon::Question;
    request.buttons = ost::kButtonYes | ost::kButtonNo;
    request.defaultButton = ost::kButtonNo;
    Seen seen;
    WhenBoxOpens([&seen](QMessageBox* box) {
        seen = Inspect(box);
        box->button(QMessageBox::Yes)->click();
    });
    QCOMPARE(ui.MessageBox(request), int(ost::kButtonYes));
    QCOMPARE(seen.title, QStringLiteral("Delete Row"));
    QCOMPARE(seen.text,
             QStringLiteral("Are you sure that you want to delete row 3?\n\n<b>not bold</b>"));
    QCOMPARE(seen.icon, QMessageBox::Question);
    QCOMPARE(seen.standardTexts.size(), 2);
    QVERIFY(seen.extraCaptions.isEmpty());
    QVERIFY(!seen.defaultText.isEmpty());
    QVERIFY(seen.checkBoxText.isEmpty());
}

void TestMessageBox::extraButtonsShowCaptionsAndTips()
{
    ost::QtUserInterface ui;
    ost::MessageBoxRequest request;
    request.title = "Paste Rows";
    request.text = "Where should the rows be inserted?";
    request.buttons = ost::kButtonCancel;
    request.extraButtons = {{"`Above", "Insert the rows above the current row.", 1000},
                            {"Below", "Insert the rows below the current row.", 1001}};
    request.defaultButton = 1001;
    Seen seen;
    WhenBoxOpens([&seen](QMessageBox* box) {
        seen = Inspect(box);
        ButtonWithText(box, QStringLiteral("Below"))->click();
    });
    QCOMPARE(ui.MessageBox(request), 1001);
    QCOMPARE(seen.extraCaptions, (QStringList{QStringLiteral("Above"), QStringLiteral("Below")}));
    QCOMPARE(seen.extraTips,
             (QStringList{QStringLiteral("Insert the rows above the current row."),
                          QStringLiteral("Insert the rows below the current row.")}));
    QCOMPARE(seen.defaultText, QStringLiteral("Below"));

    WhenBoxOpens([](QMessageBox* box) { ButtonWithText(box, QStringLiteral("Above"))->click(); });
    QCOMPARE(ui.MessageBox(request), 1000);
}

void TestMessageBox::checkBoxWritesTheAnswer()
{
    ost::QtUserInterface ui;
    bool never = false;
    ost::MessageBoxRequest request;
    request.title = "Delete Row";
    request.text = "Delete the row?";
    request.buttons = ost::kButtonOk | ost::kButtonCancel;
    request.checkBoxText = "Never ask this question again";
    request.checked = &never;
    Seen seen;
    WhenBoxOpens([&seen](QMessageBox* box) {
        seen = Inspect(box);
        box->checkBox()->setChecked(true);
        box->button(QMessageBox::Ok)->click();
    });
    QCOMPARE(ui.MessageBox(request), int(ost::kButtonOk));
    QCOMPARE(seen.checkBoxText, QStringLiteral("Never ask this question again"));
    QVERIFY(!seen.checkBoxChecked);
    QVERIFY(never);

    // The box starts from the bound value and leaves it alone when it is not touched.
    WhenBoxOpens([&seen](QMessageBox* box) {
        seen = Inspect(box);
        box->button(QMessageBox::Cancel)->click();
    });
    QCOMPARE(ui.MessageBox(request), int(ost::kButtonCancel));
    QVERIFY(seen.checkBoxChecked);
    QVERIFY(never);
}

void TestMessageBox::escapeAnswersCancel()
{
    ost::QtUserInterface ui;
    ost::MessageBoxRequest request;
    request.title = "Save Changes";
    request.text = "Save the changes to the file?";
    request.buttons = ost::kButtonYes | ost::kButtonNo | ost::kButtonCancel;
    WhenBoxOpens([](QMessageBox* box) { QTest::keyClick(box, Qt::Key_Escape); });
    QCOMPARE(ui.MessageBox(request), int(ost::kButtonCancel));
}

void TestMessageBox::progressCancelStopsTheWork()
{
    ost::QtUserInterface ui;
    ui.SetProgressDelay(0);
    ui.BeginProgress("Loading the file...");
    QVERIFY(ui.UpdateProgress(0.25));
    QProgressDialog* dialog = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* progress = qobject_cast<QProgressDialog*>(widget))
            dialog = progress;
    QVERIFY(dialog);
    QCOMPARE(dialog->labelText(), QStringLiteral("Loading the file..."));
    QCOMPARE(dialog->value(), 250);
    QVERIFY(ui.UpdateProgress(0.5));
    dialog->cancel();
    QVERIFY(!ui.UpdateProgress(0.5));
    QVERIFY(!ui.UpdateProgress(0.75));
    ui.EndProgress();
    for (QWidget* widget : QApplication::topLevelWidgets())
        QVERIFY(!qobject_cast<QProgressDialog*>(widget));
    // Without an open progress display nothing counts as cancelled.
    QVERIFY(ui.UpdateProgress(1.0));
}

QTEST_MAIN(TestMessageBox)
#include "tst_message_box.moc"
