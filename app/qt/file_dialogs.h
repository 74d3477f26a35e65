#pragma once
// The "File Properties" and "New File" dialogs: each fills its controls from a request and
// writes the choices back into it on OK. QtFileSessionDialogs shows them, and the system's
// open and save dialogs, for the file session.

#include "app/file_session.h"
#include "document/file_properties.h"

#include <QDialog>

class QCheckBox;
class QComboBox;

namespace quirnel {

class FilePropertiesDialog : public QDialog
{
    Q_OBJECT

public:
    FilePropertiesDialog(FilePropertiesRequest& request, QWidget* parent = nullptr);
    void accept() override;

    QComboBox* CharacterSet() const { return m_characterSet; }
    QComboBox* Separator() const { return m_separator; }
    QComboBox* Newline() const { return m_newline; }
    QCheckBox* NoColumnNames() const { return m_noColumnNames; }
    QCheckBox* DelimitAllCells() const { return m_delimitAllCells; }

private:
    FilePropertiesRequest& m_request;
    QComboBox* m_characterSet;
    QComboBox* m_separator;
    QComboBox* m_newline;
    QCheckBox* m_noColumnNames;
    QCheckBox* m_delimitAllCells;
};

class NewFileDialog : public QDialog
{
    Q_OBJECT

public:
    NewFileDialog(NewFileRequest& request, QWidget* parent = nullptr);
    void accept() override;

    QComboBox* Encoding() const { return m_encoding; }
    QComboBox* Separator() const { return m_separator; }

private:
    NewFileRequest& m_request;
    QComboBox* m_encoding;
    QComboBox* m_separator;
};

/// The file session's dialogs as real windows, centred on `parent`.
class QtFileSessionDialogs : public FileSessionDialogs
{
public:
    explicit QtFileSessionDialogs(QWidget* parent) : m_parent(parent) {}

    bool OpenNonstandardFile(OpenNonstandardFileRequest& request) override;
    bool ChooseFileToOpen(const std::string& title, bool csvFirst, const std::string& folder,
                          std::string& path) override;
    bool ChooseSavePath(const std::string& folder, std::string& path) override;
    bool NewFile(NewFileRequest& request) override;
    bool FileProperties(FilePropertiesRequest& request) override;

private:
    QWidget* m_parent;
};

} // namespace quirnel
