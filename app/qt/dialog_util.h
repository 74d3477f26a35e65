#pragma once
// Small helpers the editor's dialogs share: a control's name and help as its tool tip, and
// choice lists that carry their stored values.

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QString>
#include <QWidget>

#include <string>

namespace quirnel {

/// The control's name becomes its object name and the tool tip's title; the help its body.
inline void SetHelp(QWidget* widget, const char* name, const char* help)
{
    widget->setObjectName(QString::fromUtf8(name));
    if (help && *help) {
        widget->setToolTip(QStringLiteral("<b>%1</b><br>%2")
                               .arg(QString::fromUtf8(name).toHtmlEscaped(),
                                    QString::fromUtf8(help).toHtmlEscaped()));
    } else {
        widget->setToolTip(
            QStringLiteral("<b>%1</b>").arg(QString::fromUtf8(name).toHtmlEscaped()));
    }
}

/// Selects the entry whose data is `value`; the first entry when none has it.
inline void SelectValue(QComboBox* box, int value)
{
    int index = box->findData(value);
    box->setCurrentIndex(index >= 0 ? index : 0);
}

inline int SelectedValue(const QComboBox* box)
{
    return box->currentData().toInt();
}

/// OK and Cancel, wired to the dialog's accept and reject.
inline QDialogButtonBox* OkCancel(QDialog* dialog)
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    return buttons;
}

inline QString Utf8(const std::string& text)
{
    return QString::fromStdString(text);
}

} // namespace quirnel
