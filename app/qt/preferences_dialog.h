#pragma once
// The "Preferences" dialog: fills its controls from a PreferencesRequest and, on OK, writes
// the choices back into it.

#include "app/preferences.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace quirnel {

class PreferencesDialog : public QDialog
{
    Q_OBJECT

public:
    PreferencesDialog(PreferencesRequest& request, QWidget* parent = nullptr);

    void accept() override;

private:
    PreferencesRequest& m_request;
    QCheckBox* m_noConfirmDeleteRow;
    QCheckBox* m_hideIndexColumn;
    QComboBox* m_altRows;
    QComboBox* m_rowDividers;
    QComboBox* m_fontSize;
    QCheckBox* m_autoOpen;
    QCheckBox* m_recordHistory;
    QCheckBox* m_detectChanges;
    QCheckBox* m_fullPath;
    QCheckBox* m_newFileLaunchesCreateColumn;
    QComboBox* m_defaultEncoding;
    QLineEdit* m_backupLevels;
};

/// Shows the dialog; false on Cancel (the request is then unchanged).
bool RunPreferencesDialog(PreferencesRequest& request, QWidget* parent);

} // namespace quirnel
