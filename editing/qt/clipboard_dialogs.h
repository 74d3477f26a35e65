#pragma once
// The dialogs of the clipboard commands: the column mapping of Paste Row(s) (and Import), the
// insertion place, the column choice of Copy Column and Cut Column, and Paste Column's. Each
// shows its request and fills in the user's choices; the command judges them.

#include <QDialog>

#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
class QTableWidget;

namespace quirnel {

struct CopyColumnsRequest;
struct PasteColumnRequest;
struct PasteMappingRequest;
struct PastePlaceRequest;

class PasteMappingDialog : public QDialog
{
    Q_OBJECT

public:
    PasteMappingDialog(PasteMappingRequest& request, QWidget* parent = nullptr);
    void accept() override;

    QTableWidget* Table() const { return m_table; }
    /// The "CSV Column" choice of a clipboard column.
    QComboBox* Choice(int clipboardColumn) const;
    QCheckBox* HasNames() const { return m_hasNames; }
    QPushButton* Reset() const { return m_reset; }
    QPushButton* SameOrder() const { return m_sameOrder; }

private:
    /// Shows the request's mapping in the choices.
    void ShowMapping();

    PasteMappingRequest& m_request;
    QTableWidget* m_table;
    QCheckBox* m_hasNames;
    QPushButton* m_reset;
    QPushButton* m_sameOrder;
};

class PastePlaceDialog : public QDialog
{
    Q_OBJECT

public:
    PastePlaceDialog(PastePlaceRequest& request, QWidget* parent = nullptr);
    void accept() override;

    /// The choices in place order: before, after, beginning, end.
    const std::vector<QRadioButton*>& Places() const { return m_places; }

private:
    PastePlaceRequest& m_request;
    std::vector<QRadioButton*> m_places;
};

class CopyColumnsDialog : public QDialog
{
    Q_OBJECT

public:
    CopyColumnsDialog(CopyColumnsRequest& request, QWidget* parent = nullptr);
    void accept() override;

    QListWidget* Columns() const { return m_columns; }
    QCheckBox* IncludeNames() const { return m_includeNames; }

private:
    CopyColumnsRequest& m_request;
    QListWidget* m_columns;
    QCheckBox* m_includeNames;
};

class PasteColumnDialog : public QDialog
{
    Q_OBJECT

public:
    PasteColumnDialog(PasteColumnRequest& request, QWidget* parent = nullptr);
    void accept() override;

    QComboBox* InsertAfter() const { return m_insertAfter; }
    QCheckBox* FirstRowNames() const { return m_firstRowNames; }
    const std::vector<QLineEdit*>& Names() const { return m_names; }

private:
    PasteColumnRequest& m_request;
    QComboBox* m_insertAfter;
    QCheckBox* m_firstRowNames;
    std::vector<QLineEdit*> m_names;
};

} // namespace quirnel
