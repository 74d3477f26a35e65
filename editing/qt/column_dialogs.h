#pragma once
// The column commands' dialogs: new column (Create, Insert Before, Insert After), Delete Column,
// Rename Column, Combine Columns and Set Entire Column. Each shows its request's defaults and
// fills in the user's choices; what an answer means (a duplicate name, no column chosen) the
// command decides.

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace quirnel {

struct CombineColumnsRequest;
struct DeleteColumnRequest;
struct NewColumnRequest;
struct RenameColumnRequest;
struct SetEntireColumnRequest;

class NewColumnDialog : public QDialog
{
    Q_OBJECT

public:
    NewColumnDialog(NewColumnRequest& request, QWidget* parent = nullptr);
    /// OK.
    void accept() override { Finish(false); }

    QLineEdit* Name() const { return m_name; }
    QComboBox* SortMethod() const { return m_sortMethod; }
    QComboBox* AlignmentChoice() const { return m_alignment; }
    QComboBox* InsertAfter() const { return m_insertAfter; }
    QPushButton* Another() const { return m_another; }

private:
    /// OK and "Another" both create the column; `another` says which was pressed.
    void Finish(bool another);

    NewColumnRequest& m_request;
    QLineEdit* m_name;
    QComboBox* m_sortMethod;
    QComboBox* m_alignment;
    QComboBox* m_insertAfter;
    QPushButton* m_another;
};

class DeleteColumnDialog : public QDialog
{
    Q_OBJECT

public:
    DeleteColumnDialog(DeleteColumnRequest& request, QWidget* parent = nullptr);
    void accept() override;

    QComboBox* Column() const { return m_column; }

private:
    DeleteColumnRequest& m_request;
    QComboBox* m_column;
};

class RenameColumnDialog : public QDialog
{
    Q_OBJECT

public:
    RenameColumnDialog(RenameColumnRequest& request, QWidget* parent = nullptr);
    void accept() override;

    QComboBox* Column() const { return m_column; }
    QLineEdit* Name() const { return m_name; }

private:
    RenameColumnRequest& m_request;
    QComboBox* m_column;
    QLineEdit* m_name;
};

class CombineColumnsDialog : public QDialog
{
    Q_OBJECT

public:
    CombineColumnsDialog(CombineColumnsRequest& request, QWidget* parent = nullptr);
    void accept() override;

    QComboBox* Target() const { return m_target; }
    QComboBox* Source() const { return m_source; }
    QLineEdit* Separator() const { return m_separator; }
    QCheckBox* AlwaysSeparate() const { return m_alwaysSeparate; }
    QCheckBox* DeleteSource() const { return m_deleteSource; }

private:
    CombineColumnsRequest& m_request;
    QComboBox* m_target;
    QComboBox* m_source;
    QLineEdit* m_separator;
    QCheckBox* m_alwaysSeparate;
    QCheckBox* m_deleteSource;
};

class SetEntireColumnDialog : public QDialog
{
    Q_OBJECT

public:
    SetEntireColumnDialog(SetEntireColumnRequest& request, QWidget* parent = nullptr);
    void accept() override;

    QRadioButton* FillText() const { return m_fillText; }
    QRadioButton* FillNumbers() const { return m_fillNumbers; }
    QRadioButton* FillGuids() const { return m_fillGuids; }
    QLineEdit* Text() const { return m_text; }
    QLineEdit* StartNumber() const { return m_startNumber; }
    QComboBox* Scope() const { return m_scope; }

private:
    void EnableEdits();

    SetEntireColumnRequest& m_request;
    QRadioButton* m_fillText;
    QRadioButton* m_fillNumbers;
    QRadioButton* m_fillGuids;
    QLineEdit* m_text;
    QLineEdit* m_startNumber;
    QComboBox* m_scope;
};

} // namespace quirnel
