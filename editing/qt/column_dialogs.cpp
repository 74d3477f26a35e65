#include "editing/qt/column_dialogs.h"

#include "app/qt/dialog_util.h"
#include "editing/column_commands.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace quirnel {

namespace {

/// Column names are at most 255 characters long.
constexpr int kMaxColumnName = 255;

QLabel* Line(const char* text, QWidget* parent)
{
    auto* label = new QLabel(QString::fromUtf8(text), parent);
    label->setWordWrap(true);
    return label;
}

/// Lists the columns from `first` on, each carrying its index; `selected` is chosen, or none.
QComboBox* ColumnList(const std::vector<std::string>& columns, int first, int selected,
                      QWidget* parent)
{
    auto* box = new QComboBox(parent);
    for (std::size_t c = static_cast<std::size_t>(first); c < columns.size(); ++c)
        box->addItem(Utf8(columns[c]), static_cast<int>(c));
    box->setCurrentIndex(box->findData(selected));
    return box;
}

/// The chosen column's index; -1 when nothing is chosen.
int ChosenColumn(const QComboBox* box)
{
    return box->currentIndex() < 0 ? -1 : SelectedValue(box);
}

} // namespace

NewColumnDialog::NewColumnDialog(NewColumnRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(Utf8(request.title));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Line("Please specify the details for the new column.", this));
    auto* form = new QFormLayout;
    m_name = new QLineEdit(Utf8(request.name), this);
    m_name->setObjectName(QStringLiteral("Name"));
    m_name->setMaxLength(kMaxColumnName);
    form->addRow(QStringLiteral("Name:"), m_name);
    m_sortMethod = new QComboBox(this);
    for (const SortMethodName& method : kSortMethodNames)
        m_sortMethod->addItem(QString::fromUtf8(method.text), method.method);
    SelectValue(m_sortMethod, request.sortMethod);
    SetHelp(m_sortMethod, "Sort Method",
            "When sorting the column, this determines how the cell data is interpreted.");
    form->addRow(QStringLiteral("Sort method:"), m_sortMethod);
    m_alignment = new QComboBox(this);
    m_alignment->addItem(QStringLiteral("Left"), static_cast<int>(Alignment::Left));
    m_alignment->addItem(QStringLiteral("Right"), static_cast<int>(Alignment::Right));
    m_alignment->addItem(QStringLiteral("Center"), static_cast<int>(Alignment::Center));
    SelectValue(m_alignment, static_cast<int>(request.alignment));
    SetHelp(m_alignment, "Alignment", "Determines how the contents of the column are justified.");
    form->addRow(QStringLiteral("Alignment:"), m_alignment);
    m_insertAfter = ColumnList(request.columns, 0, request.insertAfter, this);
    SetHelp(m_insertAfter, "Insert After",
            "Determines which column the new column is inserted after.");
    form->addRow(QStringLiteral("Insert after:"), m_insertAfter);
    layout->addLayout(form);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_another = buttons->addButton(QStringLiteral("Another"), QDialogButtonBox::ActionRole);
    m_another->setToolTip(QStringLiteral("Create this column, then create another one."));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_another, &QPushButton::clicked, this, [this] { Finish(true); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

void NewColumnDialog::Finish(bool another)
{
    m_request.name = m_name->text().toStdString();
    m_request.sortMethod = SelectedValue(m_sortMethod);
    m_request.alignment = static_cast<Alignment>(SelectedValue(m_alignment));
    m_request.insertAfter = ChosenColumn(m_insertAfter);
    m_request.another = another;
    QDialog::accept();
}

DeleteColumnDialog::DeleteColumnDialog(DeleteColumnRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QStringLiteral("Delete Column"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Line("This will delete an entire column.", this));
    auto* form = new QFormLayout;
    m_column = ColumnList(request.columns, 1, request.column, this);
    m_column->setObjectName(QStringLiteral("Column To Delete"));
    form->addRow(QStringLiteral("Column to delete:"), m_column);
    layout->addLayout(form);
    layout->addWidget(OkCancel(this));
}

void DeleteColumnDialog::accept()
{
    m_request.column = ChosenColumn(m_column);
    QDialog::accept();
}

RenameColumnDialog::RenameColumnDialog(RenameColumnRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QStringLiteral("Rename Column"));
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    m_column = ColumnList(request.columns, 1, request.column, this);
    m_column->setObjectName(QStringLiteral("Column To Rename"));
    form->addRow(QStringLiteral("Column to rename:"), m_column);
    m_name = new QLineEdit(Utf8(request.name), this);
    m_name->setObjectName(QStringLiteral("New Name"));
    m_name->setMaxLength(kMaxColumnName);
    form->addRow(QStringLiteral("New name:"), m_name);
    layout->addLayout(form);
    layout->addWidget(OkCancel(this));
    // Choosing another column offers its name to edit.
    connect(m_column, &QComboBox::currentIndexChanged, this, [this] {
        const int column = ChosenColumn(m_column);
        if (column >= 0 && static_cast<std::size_t>(column) < m_request.columns.size())
            m_name->setText(Utf8(m_request.columns[static_cast<std::size_t>(column)]));
    });
    m_name->setFocus();
    m_name->selectAll();
}

void RenameColumnDialog::accept()
{
    m_request.column = ChosenColumn(m_column);
    m_request.name = m_name->text().toStdString();
    QDialog::accept();
}

CombineColumnsDialog::CombineColumnsDialog(CombineColumnsRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QStringLiteral("Combine Columns"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Line("This will combine two columns into one.", this));
    if (request.modified)
        layout->addWidget(Line("It would be wise to save the file before using this tool.", this));
    layout->addWidget(Line("The target column is the one that is modified.", this));
    auto* targetForm = new QFormLayout;
    m_target = ColumnList(request.columns, 1, request.target, this);
    SetHelp(m_target, "Target Column",
            "The column that is to be modified.  Text from the source column will be appended "
            "to the text in the target column.");
    targetForm->addRow(QStringLiteral("Target column:"), m_target);
    layout->addLayout(targetForm);
    layout->addWidget(
        Line("The source column is the one that gets appended to the target column.", this));
    auto* sourceForm = new QFormLayout;
    m_source = ColumnList(request.columns, 1, request.source, this);
    SetHelp(m_source, "Source Column",
            "The column that gets appended to the target column.  This column is not modified.");
    sourceForm->addRow(QStringLiteral("Source column:"), m_source);
    m_separator = new QLineEdit(Utf8(request.separator), this);
    SetHelp(m_separator, "Separator",
            "Any text entered here will be inserted at the end of the target cells, before the "
            "source cells are appended.");
    sourceForm->addRow(QStringLiteral("Separator:"), m_separator);
    layout->addLayout(sourceForm);

    auto* options = new QGroupBox(QStringLiteral("Options"), this);
    auto* optionsLayout = new QVBoxLayout(options);
    m_alwaysSeparate = new QCheckBox(QStringLiteral("Always insert separator"), options);
    m_alwaysSeparate->setChecked(request.alwaysSeparate);
    SetHelp(m_alwaysSeparate, "Always Insert Separator",
            "If checked, the separator is always inserted at the end of the target cell, even if "
            "one of the cells is blank.");
    m_deleteSource = new QCheckBox(QStringLiteral("Delete source column"), options);
    m_deleteSource->setChecked(request.deleteSource);
    SetHelp(m_deleteSource, "Delete Source Column",
            "If checked, the Source Column will be deleted.");
    optionsLayout->addWidget(m_alwaysSeparate);
    optionsLayout->addWidget(m_deleteSource);
    layout->addWidget(options);
    layout->addWidget(OkCancel(this));
}

void CombineColumnsDialog::accept()
{
    m_request.target = ChosenColumn(m_target);
    m_request.source = ChosenColumn(m_source);
    m_request.separator = m_separator->text().toStdString();
    m_request.alwaysSeparate = m_alwaysSeparate->isChecked();
    m_request.deleteSource = m_deleteSource->isChecked();
    QDialog::accept();
}

SetEntireColumnDialog::SetEntireColumnDialog(SetEntireColumnRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QStringLiteral("Set Entire Column"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Line("Choose how the column will be filled.", this));
    layout->addWidget(Line(
        "Warning:  the contents of the column will be overwritten, and there is no undo feature.",
        this));

    auto* content = new QGroupBox(QStringLiteral("Content"), this);
    auto* grid = new QGridLayout(content);
    m_fillText = new QRadioButton(QStringLiteral("Fill with text"), content);
    m_fillText->setObjectName(QStringLiteral("Fill With Text"));
    m_text = new QLineEdit(Utf8(request.text), content);
    m_text->setObjectName(QStringLiteral("Text"));
    m_fillNumbers = new QRadioButton(QStringLiteral("Fill with sequential numbers"), content);
    m_fillNumbers->setObjectName(QStringLiteral("Fill With Sequential Numbers"));
    m_startNumber = new QLineEdit(Utf8(request.startNumber), content);
    m_startNumber->setObjectName(QStringLiteral("Starting Number"));
    m_fillGuids = new QRadioButton(QStringLiteral("Fill with GUID's"), content);
    m_fillGuids->setObjectName(QStringLiteral("Fill With GUIDs"));
    grid->addWidget(m_fillText, 0, 0, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("Text: "), content), 1, 0);
    grid->addWidget(m_text, 1, 1);
    grid->addWidget(m_fillNumbers, 2, 0, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("Starting number: "), content), 3, 0);
    grid->addWidget(m_startNumber, 3, 1);
    grid->addWidget(m_fillGuids, 4, 0, 1, 2);
    layout->addWidget(content);
    switch (request.fill) {
    case ColumnFill::Text:
        m_fillText->setChecked(true);
        break;
    case ColumnFill::Numbers:
        m_fillNumbers->setChecked(true);
        break;
    case ColumnFill::Guids:
        m_fillGuids->setChecked(true);
        break;
    }

    auto* options = new QGroupBox(QStringLiteral("Options"), this);
    auto* form = new QFormLayout(options);
    m_scope = new QComboBox(options);
    m_scope->addItem(QStringLiteral("All cells"), static_cast<int>(FillScope::All));
    m_scope->addItem(QStringLiteral("Blank cells"), static_cast<int>(FillScope::Blank));
    m_scope->addItem(QStringLiteral("Non-blank cells"), static_cast<int>(FillScope::NonBlank));
    SelectValue(m_scope, static_cast<int>(request.scope));
    SetHelp(m_scope, "Scope", "This determines which cells are overwritten.");
    form->addRow(QStringLiteral("Scope:"), m_scope);
    layout->addWidget(options);
    layout->addWidget(OkCancel(this));

    for (QRadioButton* choice : {m_fillText, m_fillNumbers, m_fillGuids})
        connect(choice, &QRadioButton::toggled, this, [this] { EnableEdits(); });
    EnableEdits();
}

void SetEntireColumnDialog::EnableEdits()
{
    m_text->setEnabled(m_fillText->isChecked());
    m_startNumber->setEnabled(m_fillNumbers->isChecked());
}

void SetEntireColumnDialog::accept()
{
    m_request.fill = m_fillNumbers->isChecked() ? ColumnFill::Numbers
                     : m_fillGuids->isChecked() ? ColumnFill::Guids
                                                : ColumnFill::Text;
    m_request.text = m_text->text().toStdString();
    m_request.startNumber = m_startNumber->text().toStdString();
    m_request.scope = static_cast<FillScope>(SelectedValue(m_scope));
    QDialog::accept();
}

} // namespace quirnel
