#pragma once
// The "Open Nonstandard File" dialog: shows an OpenNonstandardFileRequest and fills it in.

#include "document/open_nonstandard_file.h"

#include <QDialog>

class QCheckBox;
class QComboBox;

namespace quirnel {

class OpenNonstandardFileDialog : public QDialog
{
    Q_OBJECT

public:
    OpenNonstandardFileDialog(OpenNonstandardFileRequest& request, QWidget* parent = nullptr);

    void accept() override;

    QCheckBox* NoColumnNamesBox() const { return m_noColumnNames; }
    QComboBox* SeparatorList() const { return m_separator; }
    QCheckBox* CharacterSetBox() const { return m_useCharacterSet; }
    QComboBox* CodePageList() const { return m_codePage; }
    QCheckBox* BackslashEscapeBox() const { return m_backslashEscape; }
    QCheckBox* IgnoreCommentsBox() const { return m_ignoreComments; }

private:
    OpenNonstandardFileRequest& m_request;
    QCheckBox* m_noColumnNames;
    QComboBox* m_separator;
    QCheckBox* m_useCharacterSet;
    QComboBox* m_codePage;
    QCheckBox* m_backslashEscape;
    QCheckBox* m_ignoreComments;
};

/// DocumentDialogs with real windows, owned by `parent`.
class QtDocumentDialogs : public DocumentDialogs
{
public:
    explicit QtDocumentDialogs(QWidget* parent) : m_parent(parent) {}
    bool OpenNonstandardFile(OpenNonstandardFileRequest& request) override;

private:
    QWidget* m_parent;
};

} // namespace quirnel
