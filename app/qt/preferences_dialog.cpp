#include "app/qt/preferences_dialog.h"

#include "app/qt/dialog_util.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace quirnel {

namespace {

template <std::size_t N>
QComboBox* ChoiceBox(const Choice (&choices)[N], int value, QWidget* parent)
{
    auto* box = new QComboBox(parent);
    for (const Choice& choice : choices)
        box->addItem(QString::fromUtf8(choice.label), choice.value);
    SelectValue(box, value);
    return box;
}

QCheckBox* Check(const char* label, const char* name, const char* help, bool value, QWidget* parent)
{
    auto* box = new QCheckBox(QString::fromUtf8(label), parent);
    SetHelp(box, name, help);
    box->setChecked(value);
    return box;
}

} // namespace

PreferencesDialog::PreferencesDialog(PreferencesRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QStringLiteral("Preferences"));
    auto* layout = new QVBoxLayout(this);

    m_noConfirmDeleteRow =
        Check("Don't confirm row deletion", "Don't Confirm Row Deletion",
              "If checked, the user will not be prompted to confirm that a row should be deleted.",
              request.noConfirmDeleteRow, this);
    m_hideIndexColumn = Check("Hide index column", "Hide Index Column",
                              "If checked, the \"Index\" column (the first column, which is "
                              "labeled \"#\") will be invisible.",
                              request.hideIndexColumn, this);
    layout->addWidget(m_noConfirmDeleteRow);
    layout->addWidget(m_hideIndexColumn);

    auto* table = new QFormLayout;
    m_altRows = ChoiceBox(kAltRowsChoices, request.altRows, this);
    SetHelp(m_altRows, "Alternating Rows",
            "Determines if every other row of the table is a different shade.");
    m_rowDividers = ChoiceBox(kRowDividerChoices, request.rowDividers, this);
    SetHelp(m_rowDividers, "Row Dividers",
            "Determines if there is a thin divider between each row.");
    m_fontSize = ChoiceBox(kFontSizeChoices, request.fontSize, this);
    SetHelp(m_fontSize, "Font Size", nullptr);
    table->addRow(QStringLiteral("Alternating rows:"), m_altRows);
    table->addRow(QStringLiteral("Row dividers:"), m_rowDividers);
    table->addRow(QStringLiteral("Font size:"), m_fontSize);
    layout->addLayout(table);

    auto* files = new QGroupBox(QStringLiteral("Files"), this);
    auto* filesLayout = new QVBoxLayout(files);
    m_autoOpen = Check("Auto-open last file", "Auto-Open Last File",
                       "If checked, the previous file is automatically reopened when the "
                       "application is restarted.",
                       request.autoOpen, files);
    m_recordHistory = Check("Record file history", "Record File History",
                            "If checked, the history of recently opened files is recorded at the "
                            "bottom of the File menu.",
                            request.recordHistory, files);
    m_detectChanges = Check("Detect external changes", "Detect External Changes",
                            "If checked, when an external program modifies the file that is being "
                            "edited, the user is asked if they wish to reopen the file.",
                            request.detectChanges, files);
    m_fullPath = Check("Full path on caption", "Full Path On Caption",
                       "If checked, the full path to the currently open file is displayed on the "
                       "window caption.  If unchecked, only the filename is displayed.",
                       request.fullPath, files);
    m_newFileLaunchesCreateColumn =
        Check("New File launches Create Column", "New File Launches Create Column",
              "If checked, the New File tool will immediately launch the Create Column tool.",
              request.newFileLaunchesCreateColumn, files);
    for (QWidget* w : {static_cast<QWidget*>(m_autoOpen), static_cast<QWidget*>(m_recordHistory),
                       static_cast<QWidget*>(m_detectChanges), static_cast<QWidget*>(m_fullPath),
                       static_cast<QWidget*>(m_newFileLaunchesCreateColumn)})
        filesLayout->addWidget(w);
    auto* filesForm = new QFormLayout;
    m_defaultEncoding = ChoiceBox(kDefaultEncodingChoices, request.defaultEncoding, files);
    SetHelp(m_defaultEncoding, "Default Encoding",
            "The default encoding when a new file is created.");
    m_backupLevels = new QLineEdit(QString::fromStdString(request.backupLevels), files);
    m_backupLevels->setMaxLength(2);
    SetHelp(m_backupLevels, "Backup Levels",
            "The maximum number of backups of the CSV file that will be made.");
    filesForm->addRow(QStringLiteral("Default encoding:"), m_defaultEncoding);
    filesForm->addRow(QStringLiteral("Backup levels:"), m_backupLevels);
    filesLayout->addLayout(filesForm);
    layout->addWidget(files);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

void PreferencesDialog::accept()
{
    m_request.noConfirmDeleteRow = m_noConfirmDeleteRow->isChecked();
    m_request.hideIndexColumn = m_hideIndexColumn->isChecked();
    m_request.altRows = SelectedValue(m_altRows);
    m_request.rowDividers = SelectedValue(m_rowDividers);
    m_request.fontSize = SelectedValue(m_fontSize);
    m_request.autoOpen = m_autoOpen->isChecked();
    m_request.recordHistory = m_recordHistory->isChecked();
    m_request.detectChanges = m_detectChanges->isChecked();
    m_request.fullPath = m_fullPath->isChecked();
    m_request.newFileLaunchesCreateColumn = m_newFileLaunchesCreateColumn->isChecked();
    m_request.defaultEncoding = SelectedValue(m_defaultEncoding);
    m_request.backupLevels = m_backupLevels->text().toStdString();
    QDialog::accept();
}

bool RunPreferencesDialog(PreferencesRequest& request, QWidget* parent)
{
    PreferencesDialog dialog(request, parent);
    return dialog.exec() == QDialog::Accepted;
}

} // namespace quirnel
