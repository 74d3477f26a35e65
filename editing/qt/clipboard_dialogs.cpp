#include "editing/qt/clipboard_dialogs.h"

#include "app/qt/dialog_util.h"
#include "editing/clipboard_columns.h"
#include "editing/clipboard_rows.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QTableWidget>
#include <QVBoxLayout>

namespace quirnel {

namespace {

/// A header cell of the mapping list with its help as tool tip.
QTableWidgetItem* HeaderItem(const char* text, const char* help)
{
    auto* item = new QTableWidgetItem(QString::fromUtf8(text));
    item->setToolTip(QString::fromUtf8(help));
    return item;
}

} // namespace

PasteMappingDialog::PasteMappingDialog(PasteMappingRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(Utf8(request.title));
    auto* layout = new QVBoxLayout(this);
    const int rows = static_cast<int>(request.clipboardColumns.size());
    m_table = new QTableWidget(rows, 2, this);
    m_table->setObjectName(QStringLiteral("Mapping"));
    m_table->setHorizontalHeaderItem(
        0, HeaderItem("Clipboard Column",
                      "These are the column names detected on the first line of the clipboard."));
    m_table->setHorizontalHeaderItem(
        1, HeaderItem("CSV Column",
                      "Choose which column in the CSV file that the clipboard column will map "
                      "to."));
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->setSelectionMode(QAbstractItemView::NoSelection);
    for (int row = 0; row < rows; ++row) {
        auto* name =
            new QTableWidgetItem(Utf8(request.clipboardColumns[static_cast<std::size_t>(row)]));
        name->setFlags(Qt::ItemIsEnabled);
        m_table->setItem(row, 0, name);
        auto* choice = new QComboBox(m_table);
        choice->addItem(QString(), 0);
        for (std::size_t c = 0; c < request.tableColumns.size(); ++c)
            choice->addItem(Utf8(request.tableColumns[c]), static_cast<int>(c) + 1);
        m_table->setCellWidget(row, 1, choice);
    }
    layout->addWidget(m_table, 1);

    m_hasNames = new QCheckBox(QStringLiteral("Clipboard contains column names"), this);
    SetHelp(m_hasNames, "Clipboard Contains Column Names",
            "Check this box if the clipboard contains column names.  Leave this unchecked when "
            "pasting from Excel.");
    m_hasNames->setChecked(request.hasNames);
    layout->addWidget(m_hasNames);

    auto* row = new QHBoxLayout;
    m_reset = new QPushButton(QStringLiteral("Reset"), this);
    m_reset->setObjectName(QStringLiteral("Reset"));
    m_reset->setToolTip(QStringLiteral("Clear the contents of the 'CSV Column' column."));
    m_sameOrder = new QPushButton(QStringLiteral("Same Order"), this);
    m_sameOrder->setObjectName(QStringLiteral("Same Order"));
    m_sameOrder->setToolTip(
        QStringLiteral("Map the clipboard columns into the table in their original order."));
    row->addWidget(m_reset);
    row->addWidget(m_sameOrder);
    row->addStretch(1);
    row->addWidget(OkCancel(this));
    layout->addLayout(row);
    connect(m_reset, &QPushButton::clicked, this, [this] {
        ResetMapping(m_request);
        ShowMapping();
    });
    connect(m_sameOrder, &QPushButton::clicked, this, [this] {
        SameOrderMapping(m_request);
        ShowMapping();
    });
    m_request.mapping.resize(request.clipboardColumns.size(), 0);
    ShowMapping();
    resize(460, 360);
}

QComboBox* PasteMappingDialog::Choice(int clipboardColumn) const
{
    return qobject_cast<QComboBox*>(m_table->cellWidget(clipboardColumn, 1));
}

void PasteMappingDialog::ShowMapping()
{
    for (int row = 0; row < m_table->rowCount(); ++row)
        SelectValue(Choice(row), m_request.mapping[static_cast<std::size_t>(row)]);
}

void PasteMappingDialog::accept()
{
    for (int row = 0; row < m_table->rowCount(); ++row)
        m_request.mapping[static_cast<std::size_t>(row)] = SelectedValue(Choice(row));
    m_request.hasNames = m_hasNames->isChecked();
    QDialog::accept();
}

PastePlaceDialog::PastePlaceDialog(PastePlaceRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QStringLiteral("Paste Row(s)"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Where should the rows be inserted?"), this));
    for (const char* text :
         {"Before current row", "After current row", "Beginning of table", "End of table"}) {
        auto* choice = new QRadioButton(QString::fromUtf8(text), this);
        choice->setObjectName(QString::fromUtf8(text));
        m_places.push_back(choice);
        layout->addWidget(choice);
    }
    const auto chosen = static_cast<std::size_t>(request.place);
    m_places[chosen < m_places.size() ? chosen : 0]->setChecked(true);
    layout->addWidget(OkCancel(this));
}

void PastePlaceDialog::accept()
{
    for (std::size_t i = 0; i < m_places.size(); ++i)
        if (m_places[i]->isChecked())
            m_request.place = static_cast<int>(i);
    QDialog::accept();
}

CopyColumnsDialog::CopyColumnsDialog(CopyColumnsRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(Utf8(request.title));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(Utf8(request.text), this));
    m_columns = new QListWidget(this);
    m_columns->setObjectName(QStringLiteral("Columns"));
    for (std::size_t c = 0; c < request.columns.size(); ++c) {
        auto* item = new QListWidgetItem(Utf8(request.columns[c]), m_columns);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        item->setCheckState(c < request.chosen.size() && request.chosen[c] ? Qt::Checked
                                                                           : Qt::Unchecked);
    }
    layout->addWidget(m_columns, 1);
    m_includeNames = new QCheckBox(QStringLiteral("Include column names"), this);
    SetHelp(m_includeNames, "Include Column Names",
            "If checked, the column names will be copied as the first row of data.");
    m_includeNames->setChecked(request.includeNames);
    layout->addWidget(m_includeNames);
    layout->addWidget(OkCancel(this));
}

void CopyColumnsDialog::accept()
{
    m_request.chosen.assign(static_cast<std::size_t>(m_columns->count()), false);
    for (int i = 0; i < m_columns->count(); ++i)
        m_request.chosen[static_cast<std::size_t>(i)] =
            m_columns->item(i)->checkState() == Qt::Checked;
    m_request.includeNames = m_includeNames->isChecked();
    QDialog::accept();
}

PasteColumnDialog::PasteColumnDialog(PasteColumnRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QStringLiteral("Paste Column"));
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    m_insertAfter = new QComboBox(this);
    for (std::size_t c = 0; c < request.columns.size(); ++c)
        m_insertAfter->addItem(Utf8(request.columns[c]), static_cast<int>(c));
    SelectValue(m_insertAfter, request.insertAfter);
    SetHelp(m_insertAfter, "Insert After",
            "Choose which column the pasted column is inserted after.");
    form->addRow(QStringLiteral("Insert after:"), m_insertAfter);
    layout->addLayout(form);
    m_firstRowNames = new QCheckBox(QStringLiteral("First row contains column names"), this);
    SetHelp(m_firstRowNames, "First Row Contains Column Names",
            "If checked, the first row in the clipboard contains the column names.  Otherwise, "
            "enter the column names below.");
    m_firstRowNames->setChecked(request.firstRowNames);
    layout->addWidget(m_firstRowNames);

    // Many clipboard columns scroll rather than make the dialog taller than the screen.
    auto* names = new QWidget;
    auto* namesForm = new QFormLayout(names);
    for (std::size_t c = 0; c < request.names.size(); ++c) {
        auto* edit = new QLineEdit(Utf8(request.names[c]), names);
        edit->setObjectName(QStringLiteral("Column %1 name").arg(c + 1));
        namesForm->addRow(QStringLiteral("Column %1 name:").arg(c + 1), edit);
        m_names.push_back(edit);
    }
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setWidget(names);
    layout->addWidget(scroll, 1);
    layout->addWidget(OkCancel(this));
    // The names come from the first row while the box is checked.
    auto follow = [this] {
        for (QLineEdit* edit : m_names)
            edit->setEnabled(!m_firstRowNames->isChecked());
    };
    connect(m_firstRowNames, &QCheckBox::toggled, this, follow);
    follow();
}

void PasteColumnDialog::accept()
{
    m_request.insertAfter = SelectedValue(m_insertAfter);
    m_request.firstRowNames = m_firstRowNames->isChecked();
    m_request.names.clear();
    for (QLineEdit* edit : m_names)
        m_request.names.push_back(edit->text().toStdString());
    QDialog::accept();
}

} // namespace quirnel
