#include "app/qt/filter_bar.h"

#include "app/command_ids.h"
#include "app/command_table.h"

#include <QCheckBox>
#include <QLineEdit>

namespace quirnel {

namespace {

QString FromTable(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

FilterBar::FilterBar(QObject* parent)
    : QObject(parent), m_check(new QCheckBox), m_text(new QLineEdit)
{
    if (const CommandSpec* box = FindCommand(cmd::kFilterEnabled)) {
        m_check->setText(FromTable(box->caption));
        m_check->setObjectName(FromTable(box->label));
        m_check->setToolTip(FromTable(box->description));
    }
    if (const CommandSpec* field = FindCommand(cmd::kFilterText)) {
        m_text->setObjectName(FromTable(field->label));
        m_text->setToolTip(FromTable(field->description));
        m_text->setPlaceholderText(FromTable(field->cueText));
    }
    m_text->setMaximumWidth(200);
    connect(m_check, &QCheckBox::clicked, this,
            [this] { emit CommandChosen(cmd::kFilterEnabled); });
    connect(m_text, &QLineEdit::returnPressed, this,
            [this] { emit CommandChosen(cmd::kFilterText); });
}

RowFilterSettings FilterBar::Settings(int id, bool caseSensitive, bool wholeWord)
{
    if (id == cmd::kFilterText)
        m_check->setChecked(true);
    RowFilterSettings settings;
    settings.enabled = m_check->isChecked();
    settings.text = m_text->text().toStdU16String();
    settings.caseSensitive = caseSensitive;
    settings.wholeWord = wholeWord;
    return settings;
}

} // namespace quirnel
