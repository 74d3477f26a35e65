#pragma once
// The "Export HTML" dialog: clipboard or file, and the file's path with a browse button. It
// only fills the request.

#include <QDialog>

class QLineEdit;
class QPushButton;
class QRadioButton;

namespace quirnel {

struct ExportHtmlRequest;

class ExportHtmlDialog : public QDialog
{
    Q_OBJECT

public:
    ExportHtmlDialog(ExportHtmlRequest& request, QWidget* parent = nullptr);
    void accept() override;

    QRadioButton* ToClipboard() const { return m_toClipboard; }
    QRadioButton* ToFile() const { return m_toFile; }
    QLineEdit* Path() const { return m_path; }

private:
    void Browse();
    void FollowTarget();

    ExportHtmlRequest& m_request;
    QRadioButton* m_toClipboard;
    QRadioButton* m_toFile;
    QLineEdit* m_path;
    QPushButton* m_browse;
};

} // namespace quirnel
