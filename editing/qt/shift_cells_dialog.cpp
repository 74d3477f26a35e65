#include "editing/qt/shift_cells_dialog.h"

#include "app/qt/dialog_util.h"
#include "editing/column_commands.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QRadioButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace quirnel {

ShiftCellsDialog::ShiftCellsDialog(ShiftCellsRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QStringLiteral("Shift Cells"));
    auto* layout = new QVBoxLayout(this);
    auto* choices = new QHBoxLayout;

    auto* direction = new QGroupBox(QStringLiteral("Direction"), this);
    auto* directionLayout = new QVBoxLayout(direction);
    m_left = new QRadioButton(QStringLiteral("Left"), direction);
    SetHelp(m_left, "Left", "Cells will be shifted left.");
    m_right = new QRadioButton(QStringLiteral("Right"), direction);
    SetHelp(m_right, "Right", "Cells will be shifted right.");
    (request.left ? m_left : m_right)->setChecked(true);
    directionLayout->addWidget(m_left);
    directionLayout->addWidget(m_right);
    choices->addWidget(direction);

    auto* scope = new QGroupBox(QStringLiteral("Scope"), this);
    auto* scopeLayout = new QVBoxLayout(scope);
    m_all = new QRadioButton(QStringLiteral("All"), scope);
    SetHelp(m_all, "All", "All cells on the row will be shifted.");
    m_leftOfPivot = new QRadioButton(QStringLiteral("Left of pivot column"), scope);
    SetHelp(m_leftOfPivot, "Left of pivot column",
            "Only cells to the left of the pivot column will be shifted.");
    m_rightOfPivot = new QRadioButton(QStringLiteral("Right of pivot column"), scope);
    SetHelp(m_rightOfPivot, "Right of pivot column",
            "Only cells to the right of the pivot column will be shifted.");
    (request.scope == ShiftScope::LeftOfPivot    ? m_leftOfPivot
     : request.scope == ShiftScope::RightOfPivot ? m_rightOfPivot
                                                 : m_all)
        ->setChecked(true);
    scopeLayout->addWidget(m_all);
    scopeLayout->addWidget(m_leftOfPivot);
    scopeLayout->addWidget(m_rightOfPivot);
    choices->addWidget(scope);
    layout->addLayout(choices);

    auto* form = new QFormLayout;
    m_pivot = new QComboBox(this);
    for (std::size_t c = 1; c < request.columns.size(); ++c)
        m_pivot->addItem(Utf8(request.columns[c]), static_cast<int>(c));
    SelectValue(m_pivot, request.pivot);
    SetHelp(m_pivot, "Pivot Column",
            "The column where the shifting starts (when shifting right) or ends (when shifting "
            "left).");
    form->addRow(QStringLiteral("Pivot column:"), m_pivot);
    layout->addLayout(form);

    auto* preview = new QGroupBox(QStringLiteral("Preview"), this);
    auto* previewLayout = new QVBoxLayout(preview);
    m_preview = new QTableWidget(preview);
    m_preview->setObjectName(QStringLiteral("Preview"));
    m_preview->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_preview->setSelectionMode(QAbstractItemView::NoSelection);
    QStringList headers;
    for (std::size_t c = 1; c < request.columns.size(); ++c)
        headers << Utf8(request.columns[c]);
    m_preview->setColumnCount(static_cast<int>(headers.size()));
    m_preview->setHorizontalHeaderLabels(headers);
    m_preview->setRowCount(static_cast<int>(request.rows.size()));
    previewLayout->addWidget(m_preview);
    layout->addWidget(preview, 1);

    layout->addWidget(OkCancel(this));

    for (QRadioButton* choice : {m_left, m_right, m_all, m_leftOfPivot, m_rightOfPivot})
        connect(choice, &QRadioButton::toggled, this, [this] { UpdatePreview(); });
    connect(m_pivot, &QComboBox::currentIndexChanged, this, [this] { UpdatePreview(); });
    UpdatePreview();
    resize(640, 420);
}

void ShiftCellsDialog::Collect(ShiftCellsRequest& request) const
{
    request.left = m_left->isChecked();
    request.scope = m_leftOfPivot->isChecked()    ? ShiftScope::LeftOfPivot
                    : m_rightOfPivot->isChecked() ? ShiftScope::RightOfPivot
                                                  : ShiftScope::All;
    request.pivot = m_pivot->currentIndex() < 0 ? 1 : SelectedValue(m_pivot);
}

void ShiftCellsDialog::UpdatePreview()
{
    // The choices count only once OK is pressed: the preview works on a copy.
    ShiftCellsRequest shown = m_request;
    Collect(shown);
    const std::vector<std::vector<std::string>> rows = ShiftPreview(shown);
    for (std::size_t r = 0; r < rows.size(); ++r)
        for (std::size_t c = 0; c < rows[r].size(); ++c)
            m_preview->setItem(static_cast<int>(r), static_cast<int>(c),
                               new QTableWidgetItem(Utf8(rows[r][c])));
}

void ShiftCellsDialog::accept()
{
    Collect(m_request);
    QDialog::accept();
}

} // namespace quirnel
