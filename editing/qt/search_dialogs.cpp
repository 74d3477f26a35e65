#include "editing/qt/search_dialogs.h"

#include "app/qt/dialog_util.h"
#include "editing/find_replace.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace quirnel {

namespace {

QString Wide(const std::u16string& text)
{
    return QString::fromStdU16String(text);
}

std::u16string Wide(const QLineEdit* edit)
{
    return edit->text().toStdU16String();
}

QCheckBox* Check(QWidget* parent, const char* text, const char* name, const char* help,
                 bool checked)
{
    auto* box = new QCheckBox(QString::fromUtf8(text), parent);
    SetHelp(box, name, help);
    box->setChecked(checked);
    return box;
}

QCheckBox* CaseCheck(QWidget* parent, bool checked)
{
    return Check(parent, "Case sensitive", "Case Sensitive",
                 "If checked, upper and lower case letters are treated as different characters.",
                 checked);
}

QCheckBox* WholeWordCheck(QWidget* parent, bool checked)
{
    return Check(parent, "Whole word", "Whole Word",
                 "If checked, matches within a word are ignored.  In other words, a match is "
                 "ignored if it occurs before or after a letter, number, or underscore.",
                 checked);
}

/// The search text's field, its text selected so that typing replaces it.
QLineEdit* SearchTextEdit(QWidget* parent, const std::u16string& text)
{
    auto* edit = new QLineEdit(Wide(text), parent);
    edit->selectAll();
    SetHelp(edit, "Search Text", "The string to search for.");
    return edit;
}

} // namespace

SearchDialog::SearchDialog(SearchRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    const SearchOptions& options = request.options;
    setWindowTitle(QStringLiteral("Search"));
    auto* layout = new QVBoxLayout(this);

    layout->addWidget(new QLabel(QStringLiteral("Search text:"), this));
    m_search = SearchTextEdit(this, options.searchText);
    layout->addWidget(m_search);

    m_replace = Check(this, "Replace occurrences with:", "Replace Occurrences With",
                      "If checked, this will be a search and replace operation instead of just a "
                      "search operation.",
                      options.replace);
    layout->addWidget(m_replace);
    m_replaceText = new QLineEdit(Wide(options.replaceText), this);
    SetHelp(m_replaceText, "Replace Text", "The string to replace the search string with.");
    layout->addWidget(m_replaceText);

    m_case = CaseCheck(this, options.caseSensitive);
    m_word = WholeWordCheck(this, options.wholeWord);
    m_anyChar = Check(this, "Use ? wildcard", "Use ? Wildcard",
                      "If checked, any question marks encountered in the search string are "
                      "treated as wildcards that match any single character.",
                      options.anyChar);
    m_anyRun = Check(this, "Use * wildcard", "Use * Wildcard",
                     "If checked, any asterisks encountered in the search string are treated as "
                     "wildcards that match any number of characters (including 0).",
                     options.anyRun);
    for (QCheckBox* box : {m_case, m_word, m_anyChar, m_anyRun})
        layout->addWidget(box);

    auto* form = new QFormLayout;
    m_direction = new QComboBox(this);
    m_direction->addItem(QStringLiteral("Forward from here"),
                         static_cast<int>(SearchDirection::ForwardFromHere));
    m_direction->addItem(QStringLiteral("Forward from beginning"),
                         static_cast<int>(SearchDirection::ForwardFromBeginning));
    m_direction->addItem(QStringLiteral("Backward from here"),
                         static_cast<int>(SearchDirection::BackwardFromHere));
    m_direction->addItem(QStringLiteral("Backward from end"),
                         static_cast<int>(SearchDirection::BackwardFromEnd));
    SelectValue(m_direction, static_cast<int>(options.direction));
    SetHelp(m_direction, "Direction",
            "Determines where the search starts and which direction it goes.");
    form->addRow(QStringLiteral("Direction: "), m_direction);
    layout->addLayout(form);

    m_prompt = Check(this, "Prompt on replace", "Prompt On Replace",
                     "If checked, the user is prompted before replacing each occurrence of the "
                     "search string.",
                     options.promptOnReplace);
    m_replaceAll = Check(this, "Replace all", "Replace All",
                         "If checked, all occurrences of the search string are replaced.  If "
                         "unchecked, only the first occurrence is replaced.",
                         options.replaceAll);
    layout->addWidget(m_prompt);
    layout->addWidget(m_replaceAll);

    QDialogButtonBox* buttons = OkCancel(this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    layout->addWidget(buttons);
    connect(m_replace, &QCheckBox::toggled, this, [this] { UpdateEnabled(); });
    connect(m_search, &QLineEdit::textChanged, this, [this] { UpdateEnabled(); });
    UpdateEnabled();
}

void SearchDialog::UpdateEnabled()
{
    const bool replace = m_replace->isChecked();
    m_replaceText->setEnabled(replace);
    m_prompt->setEnabled(replace);
    m_replaceAll->setEnabled(replace);
    m_ok->setEnabled(!m_search->text().isEmpty());
}

void SearchDialog::accept()
{
    if (m_search->text().isEmpty())
        return;
    SearchOptions& options = m_request.options;
    options.searchText = Wide(m_search);
    options.replace = m_replace->isChecked();
    options.replaceText = Wide(m_replaceText);
    options.caseSensitive = m_case->isChecked();
    options.wholeWord = m_word->isChecked();
    options.anyChar = m_anyChar->isChecked();
    options.anyRun = m_anyRun->isChecked();
    options.direction = static_cast<SearchDirection>(SelectedValue(m_direction));
    options.promptOnReplace = m_prompt->isChecked();
    options.replaceAll = m_replaceAll->isChecked();
    QDialog::accept();
}

SearchColumnDialog::SearchColumnDialog(SearchColumnRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QStringLiteral("Search Column"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(
        QStringLiteral("Search column \"%1\" for:").arg(Utf8(request.columnName)), this));
    m_text = SearchTextEdit(this, request.text);
    layout->addWidget(m_text);
    m_case = CaseCheck(this, request.caseSensitive);
    m_word = WholeWordCheck(this, request.wholeWord);
    layout->addWidget(m_case);
    layout->addWidget(m_word);
    QDialogButtonBox* buttons = OkCancel(this);
    QWidget* ok = buttons->button(QDialogButtonBox::Ok);
    ok->setEnabled(!m_text->text().isEmpty());
    connect(m_text, &QLineEdit::textChanged, ok,
            [ok](const QString& text) { ok->setEnabled(!text.isEmpty()); });
    layout->addWidget(buttons);
}

void SearchColumnDialog::accept()
{
    if (m_text->text().isEmpty())
        return;
    m_request.text = Wide(m_text);
    m_request.caseSensitive = m_case->isChecked();
    m_request.wholeWord = m_word->isChecked();
    QDialog::accept();
}

} // namespace quirnel
