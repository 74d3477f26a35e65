#pragma once
// The dialog of "Spell Check Table" for one unknown word: the cell's text with the word
// marked, suggestions, the replacement, and the user's choice. It only fills the request.

#include <QDialog>

class QLineEdit;
class QListWidget;
class QTextEdit;

namespace quirnel {

struct SpellCheckRequest;
enum class SpellAction;

class SpellCheckDialog : public QDialog
{
    Q_OBJECT

public:
    SpellCheckDialog(SpellCheckRequest& request, QWidget* parent = nullptr);

    /// Ends the dialog with this choice (the buttons call it; tests may too).
    void Choose(SpellAction action);

private:
    SpellCheckRequest& m_request;
    QTextEdit* m_cell;
    QLineEdit* m_replacement;
    QListWidget* m_suggestions;
};

} // namespace quirnel
