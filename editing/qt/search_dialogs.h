#pragma once
// The table search's "Search" dialog and the grid's "Search Column" dialog. Each fills its
// request when the user presses OK; what the options mean is decided in the core.

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace quirnel {

struct SearchRequest;
struct SearchColumnRequest;

class SearchDialog : public QDialog
{
    Q_OBJECT

public:
    SearchDialog(SearchRequest& request, QWidget* parent = nullptr);

    QLineEdit* SearchText() const { return m_search; }
    QCheckBox* Replace() const { return m_replace; }
    QLineEdit* ReplaceText() const { return m_replaceText; }
    QCheckBox* CaseSensitive() const { return m_case; }
    QCheckBox* WholeWord() const { return m_word; }
    QCheckBox* AnyChar() const { return m_anyChar; }
    QCheckBox* AnyRun() const { return m_anyRun; }
    QComboBox* Direction() const { return m_direction; }
    QCheckBox* Prompt() const { return m_prompt; }
    QCheckBox* ReplaceAll() const { return m_replaceAll; }

    void accept() override;

private:
    void UpdateEnabled();

    SearchRequest& m_request;
    QLineEdit* m_search;
    QCheckBox* m_replace;
    QLineEdit* m_replaceText;
    QCheckBox* m_case;
    QCheckBox* m_word;
    QCheckBox* m_anyChar;
    QCheckBox* m_anyRun;
    QComboBox* m_direction;
    QCheckBox* m_prompt;
    QCheckBox* m_replaceAll;
    QWidget* m_ok = nullptr;
};

class SearchColumnDialog : public QDialog
{
    Q_OBJECT

public:
    SearchColumnDialog(SearchColumnRequest& request, QWidget* parent = nullptr);

    QLineEdit* Text() const { return m_text; }
    QCheckBox* CaseSensitive() const { return m_case; }
    QCheckBox* WholeWord() const { return m_word; }

    void accept() override;

private:
    SearchColumnRequest& m_request;
    QLineEdit* m_text;
    QCheckBox* m_case;
    QCheckBox* m_word;
};

} // namespace quirnel
