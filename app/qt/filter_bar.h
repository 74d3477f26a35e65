#pragma once
// The toolbar's row filter: the "Filter:" check box and its text field. Until the core has a
// row filter of its own, this hides the rows without the text itself.

#include <QObject>

class QCheckBox;
class QLineEdit;

namespace quirnel {

class TableDocument;

class FilterBar : public QObject
{
    Q_OBJECT

public:
    /// The two widgets are made without a parent: the toolbar that shows them takes them.
    explicit FilterBar(QObject* parent = nullptr);

    QCheckBox* Check() const { return m_check; }
    QLineEdit* Text() const { return m_text; }

    /// Carries out kFilterEnabled, kFilterText (Enter in the field turns the filter on) or
    /// kFilterOptionChanged: hides every row without the text in any data cell, or shows all.
    void Apply(int id, TableDocument& document, bool caseSensitive, bool wholeWord);

signals:
    /// The check box was clicked or Enter pressed in the field.
    void CommandChosen(int id);

private:
    QCheckBox* m_check;
    QLineEdit* m_text;
    bool m_enabled = false;
};

} // namespace quirnel
