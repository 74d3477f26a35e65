#include "editing/qt/spell_check_dialog.h"

#include "app/qt/dialog_util.h"
#include "editing/spell_check.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

namespace quirnel {

namespace {

QString Escaped(const std::string& text)
{
    return Utf8(text).toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>"));
}

} // namespace

SpellCheckDialog::SpellCheckDialog(SpellCheckRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(Utf8(request.title));
    auto* layout = new QGridLayout(this);

    auto* where = new QLabel(QStringLiteral("Row %1, column \"%2\":")
                                 .arg(request.rowNumber)
                                 .arg(Utf8(request.columnName)),
                             this);
    layout->addWidget(where, 0, 0, 1, 2);

    m_cell = new QTextEdit(this);
    m_cell->setObjectName(QStringLiteral("CellText"));
    m_cell->setReadOnly(true);
    const std::size_t start = std::min(request.wordStart, request.cellText.size());
    m_cell->setHtml(Escaped(request.cellText.substr(0, start)) +
                    QStringLiteral("<b><span style=\"color:#c00000\">") +
                    Escaped(request.cellText.substr(start, request.wordLength)) +
                    QStringLiteral("</span></b>") +
                    Escaped(request.cellText.substr(
                        std::min(request.cellText.size(), start + request.wordLength))));
    m_cell->setMaximumHeight(m_cell->fontMetrics().lineSpacing() * 5);
    layout->addWidget(m_cell, 1, 0, 1, 2);

    layout->addWidget(
        new QLabel(
            QStringLiteral("Not in dictionary: <b>%1</b>").arg(Utf8(request.word).toHtmlEscaped()),
            this),
        2, 0, 1, 2);
    auto* changeLabel = new QLabel(QStringLiteral("Change to:"), this);
    m_replacement = new QLineEdit(Utf8(request.replacement), this);
    m_replacement->setObjectName(QStringLiteral("Replacement"));
    changeLabel->setBuddy(m_replacement);
    layout->addWidget(changeLabel, 3, 0);
    layout->addWidget(m_replacement, 3, 1);

    layout->addWidget(new QLabel(QStringLiteral("Suggestions:"), this), 4, 0, Qt::AlignTop);
    m_suggestions = new QListWidget(this);
    m_suggestions->setObjectName(QStringLiteral("Suggestions"));
    for (const std::string& suggestion : request.suggestions)
        m_suggestions->addItem(Utf8(suggestion));
    if (m_suggestions->count() > 0)
        m_suggestions->setCurrentRow(0);
    // A short list keeps the dialog small, so that less of the table hides behind it.
    m_suggestions->setMaximumHeight(m_suggestions->fontMetrics().lineSpacing() * 8);
    connect(m_suggestions, &QListWidget::currentTextChanged, m_replacement, &QLineEdit::setText);
    layout->addWidget(m_suggestions, 4, 1);

    auto* buttons = new QVBoxLayout;
    const struct
    {
        const char* caption;
        SpellAction action;
    } kChoices[] = {
        {"Replace", SpellAction::Replace},
        {"Replace All", SpellAction::ReplaceAll},
        {"Ignore", SpellAction::Ignore},
        {"Ignore All", SpellAction::IgnoreAll},
        {"Add to Dictionary", SpellAction::AddToDictionary},
    };
    for (const auto& choice : kChoices) {
        auto* button = new QPushButton(QString::fromUtf8(choice.caption), this);
        button->setObjectName(QString::fromUtf8(choice.caption));
        const SpellAction action = choice.action;
        connect(button, &QPushButton::clicked, this, [this, action] { Choose(action); });
        buttons->addWidget(button);
    }
    auto* stop = new QPushButton(QStringLiteral("Stop"), this);
    stop->setObjectName(QStringLiteral("Stop"));
    connect(stop, &QPushButton::clicked, this, &QDialog::reject);
    buttons->addStretch(1);
    buttons->addWidget(stop);
    layout->addLayout(buttons, 0, 2, 5, 1);
    // Enter replaces, the usual answer when the suggestion is right.
    if (auto* replace = findChild<QPushButton*>(QStringLiteral("Replace")))
        replace->setDefault(true);
    m_replacement->setFocus();
}

void SpellCheckDialog::Choose(SpellAction action)
{
    m_request.action = action;
    m_request.replacement = m_replacement->text().toStdString();
    accept();
}

} // namespace quirnel
