#include "ostrand/qt/qt_user_interface.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QString>

#include <algorithm>
#include <cmath>
#include <map>

namespace ost {
namespace {

constexpr int kProgressSteps = 1000;

struct StandardPair
{
    StandardButton ours;
    QMessageBox::StandardButton qt;
};

constexpr StandardPair kStandardButtons[] = {
    {kButtonOk, QMessageBox::Ok},         {kButtonCancel, QMessageBox::Cancel},
    {kButtonYes, QMessageBox::Yes},       {kButtonNo, QMessageBox::No},
    {kButtonRetry, QMessageBox::Retry},   {kButtonAbort, QMessageBox::Abort},
    {kButtonIgnore, QMessageBox::Ignore},
};

QMessageBox::Icon ToQtIcon(MessageIcon icon)
{
    switch (icon) {
    case MessageIcon::Information:
        return QMessageBox::Information;
    case MessageIcon::Warning:
        return QMessageBox::Warning;
    case MessageIcon::Error:
        return QMessageBox::Critical;
    case MessageIcon::Question:
        return QMessageBox::Question;
    case MessageIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

/// Messages are composed with CR LF line ends, which a label would show as two breaks.
QString DisplayText(const std::string& text)
{
    QString result = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    result.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    result.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return result;
}

/// What closing the box without a button means: the most cautious answer it offers.
int EscapeAnswer(unsigned buttons)
{
    for (StandardButton button : {kButtonCancel, kButtonNo, kButtonAbort, kButtonIgnore, kButtonOk})
        if (buttons & button)
            return button;
    return kButtonNone;
}

} // namespace

QtUserInterface::QtUserInterface(QWidget* parent) : m_parent(parent) {}

QtUserInterface::~QtUserInterface() = default;

int QtUserInterface::MessageBox(const MessageBoxRequest& request)
{
    QMessageBox box(m_parent.data());
    box.setWindowTitle(DisplayText(request.title));
    // Plain text: file names and cell contents in messages must not be read as markup.
    box.setTextFormat(Qt::PlainText);
    box.setText(DisplayText(request.text));
    box.setIcon(ToQtIcon(request.icon));

    std::map<QAbstractButton*, int> answers;
    for (const StandardPair& pair : kStandardButtons)
        if (request.buttons & pair.ours)
            answers[box.addButton(pair.qt)] = pair.ours;
    for (const ExtraButton& extra : request.extraButtons) {
        QPushButton* button =
            box.addButton(DisplayText(DisplayedCaption(extra.caption)), QMessageBox::ActionRole);
        button->setToolTip(DisplayText(extra.tip));
        answers[button] = extra.id;
    }
    if (request.defaultButton != 0) {
        for (const auto& [button, answer] : answers) {
            if (answer == request.defaultButton) {
                box.setDefaultButton(qobject_cast<QPushButton*>(button));
                break;
            }
        }
    }

    QCheckBox* checkBox = nullptr;
    if (!request.checkBoxText.empty()) {
        checkBox = new QCheckBox(DisplayText(request.checkBoxText), &box);
        checkBox->setChecked(request.checked && *request.checked);
        box.setCheckBox(checkBox);
    }

    box.exec();

    if (checkBox && request.checked)
        *request.checked = checkBox->isChecked();
    auto found = answers.find(box.clickedButton());
    return found != answers.end() ? found->second : EscapeAnswer(request.buttons);
}

void QtUserInterface::Beep()
{
    if (m_soundEffects)
        QApplication::beep();
}

void QtUserInterface::BeginProgress(const std::string& text)
{
    m_progress = std::make_unique<QProgressDialog>(DisplayText(text), QObject::tr("Cancel"), 0,
                                                   kProgressSteps, m_parent.data());
    m_progress->setWindowModality(Qt::ApplicationModal);
    m_progress->setMinimumDuration(m_progressDelay);
    // The work decides when it ends; a dialog closing itself at 100% would hide a late cancel.
    m_progress->setAutoClose(false);
    m_progress->setAutoReset(false);
    m_progressValue = 0;
    m_progress->setValue(0);
}

bool QtUserInterface::UpdateProgress(double fraction)
{
    if (!m_progress)
        return true;
    if (!(fraction >= 0.0)) // also catches NaN
        fraction = 0.0;
    int value = static_cast<int>(std::lround(std::min(fraction, 1.0) * kProgressSteps));
    // Callers report per record; the display and the event loop only need each step once.
    if (value != m_progressValue) {
        m_progressValue = value;
        m_progress->setValue(value);
        QCoreApplication::processEvents();
    }
    return !m_progress->wasCanceled();
}

void QtUserInterface::EndProgress()
{
    m_progress.reset();
    m_progressValue = -1;
}

} // namespace ost
