#include "app/qt/file_dialogs.h"

#include "app/qt/dialog_util.h"
#include "document/qt/open_nonstandard_file_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace quirnel {

namespace {

QComboBox* ValueBox(const std::vector<LabelledValue>& choices, int value, QWidget* parent)
{
    auto* box = new QComboBox(parent);
    for (const LabelledValue& choice : choices)
        box->addItem(Utf8(choice.label), choice.value);
    SelectValue(box, value);
    return box;
}

} // namespace

FilePropertiesDialog::FilePropertiesDialog(FilePropertiesRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QStringLiteral("File Properties"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(
        new QLabel(QStringLiteral("These properties apply to the currently open file."), this));
    auto* form = new QFormLayout;

    m_characterSet = ValueBox(CharacterSetChoices(), static_cast<int>(request.codePage), this);
    SetHelp(m_characterSet, "Character Set",
            "The character set that the file uses.  This affects the appearance of non-ASCII "
            "characters.  Choose \"UTF-8\" to support all unicode characters.");
    m_separator = ValueBox(SeparatorChoices(), request.separator, this);
    SetHelp(m_separator, "Separator",
            "This character appears in between each column's data.  Separators are only visible "
            "in the raw file.");
    m_newline = new QComboBox(this);
    for (const NewlineChoice& choice : kNewlineChoices)
        m_newline->addItem(QString::fromUtf8(choice.label));
    m_newline->setCurrentIndex(
        request.newline >= 0 && request.newline < m_newline->count() ? request.newline : 0);
    SetHelp(m_newline, "Newline",
            "The type of newline used to terminate each line of the CSV file.  This is "
            "auto-detected when the file is opened, but you can change it here.");
    form->addRow(QStringLiteral("Character set:"), m_characterSet);
    form->addRow(QStringLiteral("Separator:"), m_separator);
    form->addRow(QStringLiteral("Newline:"), m_newline);
    layout->addLayout(form);

    m_noColumnNames = new QCheckBox(QStringLiteral("No column names"), this);
    m_noColumnNames->setChecked(request.noColumnNames);
    SetHelp(m_noColumnNames, "No Column Names",
            "If checked, column names are not saved to the first line of the file.");
    m_delimitAllCells = new QCheckBox(QStringLiteral("Delimit all cells"), this);
    m_delimitAllCells->setChecked(request.delimitAllCells);
    SetHelp(m_delimitAllCells, "Delimit All Cells",
            "If checked, when the file is saved, every cell will be surrounded with quotes.");
    layout->addWidget(m_noColumnNames);
    layout->addWidget(m_delimitAllCells);
    layout->addWidget(OkCancel(this));
}

void FilePropertiesDialog::accept()
{
    m_request.codePage = static_cast<std::uint32_t>(SelectedValue(m_characterSet));
    m_request.separator = SelectedValue(m_separator);
    m_request.newline = m_newline->currentIndex();
    m_request.noColumnNames = m_noColumnNames->isChecked();
    m_request.delimitAllCells = m_delimitAllCells->isChecked();
    QDialog::accept();
}

NewFileDialog::NewFileDialog(NewFileRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QStringLiteral("New File"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Please review the new CSV file's setup."), this));
    auto* form = new QFormLayout;
    m_encoding = ValueBox(NewFileEncodingChoices(), request.encoding, this);
    SetHelp(m_encoding, "Encoding",
            "Should the CSV file support 8-bit ASCII characters, or 16-bit unicode characters?  "
            "Unicode can represent a much larger set of characters, but may not be supported by "
            "all programs.");
    m_separator = ValueBox(NewFileSeparatorChoices(), request.separator, this);
    SetHelp(m_separator, "Separator",
            "Choose the character that will separate each data field.  Commas are recommended.");
    form->addRow(QStringLiteral("Encoding:"), m_encoding);
    form->addRow(QStringLiteral("Separator:"), m_separator);
    layout->addLayout(form);
    layout->addWidget(OkCancel(this));
}

void NewFileDialog::accept()
{
    m_request.encoding = SelectedValue(m_encoding);
    m_request.separator = SelectedValue(m_separator);
    QDialog::accept();
}

bool QtFileSessionDialogs::OpenNonstandardFile(OpenNonstandardFileRequest& request)
{
    return QtDocumentDialogs(m_parent).OpenNonstandardFile(request);
}

bool QtFileSessionDialogs::ChooseFileToOpen(const std::string& title, bool csvFirst,
                                            const std::string& folder, std::string& path)
{
    const QString csv = QStringLiteral("CSV files (*.csv *.txt *.tsv)");
    const QString all = QStringLiteral("All files (*)");
    const QString chosen = QFileDialog::getOpenFileName(
        m_parent, Utf8(title), Utf8(folder),
        csvFirst ? csv + QStringLiteral(";;") + all : all + QStringLiteral(";;") + csv);
    if (chosen.isEmpty())
        return false;
    path = chosen.toStdString();
    return true;
}

bool QtFileSessionDialogs::ChooseSavePath(const std::string& folder, std::string& path)
{
    const QString chosen =
        QFileDialog::getSaveFileName(m_parent, QStringLiteral("Save File As"), Utf8(folder),
                                     QStringLiteral("CSV files (*.csv);;All files (*)"));
    if (chosen.isEmpty())
        return false;
    path = chosen.toStdString();
    return true;
}

bool QtFileSessionDialogs::NewFile(NewFileRequest& request)
{
    NewFileDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtFileSessionDialogs::FileProperties(FilePropertiesRequest& request)
{
    FilePropertiesDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

} // namespace quirnel
