#pragma once
// The dialog that asks which file extension the editor should open by default.

#include <QDialog>

#include <string>

class QLineEdit;

namespace quirnel {

class AssociationDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AssociationDialog(QWidget* parent = nullptr);

    /// The extension as typed (possibly with a leading dot).
    std::string Extension() const;
    QLineEdit* ExtensionField() const { return m_extension; }

private:
    QLineEdit* m_extension;
};

} // namespace quirnel
