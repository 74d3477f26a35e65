#pragma once
// The toolbar's row filter controls: the "Filter:" check box and its text field, with their
// names, tips and cue text from the command table. They only send their commands and hand over
// what they hold; the row filter itself is the core's.

#include "editing/row_filter.h"

#include <QObject>

class QCheckBox;
class QLineEdit;

namespace quirnel {

class FilterBar : public QObject
{
    Q_OBJECT

public:
    /// The two widgets are made without a parent: the toolbar that shows them takes them.
    explicit FilterBar(QObject* parent = nullptr);

    QCheckBox* Check() const { return m_check; }
    QLineEdit* Text() const { return m_text; }

    /// What the filter is to do after command `id`: Enter in the field (kFilterText) checks
    /// the box first. The options come from the preferences.
    RowFilterSettings Settings(int id, bool caseSensitive, bool wholeWord);

signals:
    /// The check box was clicked or Enter pressed in the field.
    void CommandChosen(int id);

private:
    QCheckBox* m_check;
    QLineEdit* m_text;
};

} // namespace quirnel
