#include "document/qt/open_nonstandard_file_dialog.h"

#include "ostrand/codepage/code_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QVBoxLayout>

namespace quirnel {

namespace {

/// Tool tips carry the help: its title in bold, then the text.
QString HelpTip(const char* title, const char* text)
{
    return QStringLiteral("<b>%1</b><br>%2")
        .arg(QString::fromUtf8(title).toHtmlEscaped(), QString::fromUtf8(text).toHtmlEscaped());
}

QString CodePageLabel(std::uint32_t codePage)
{
    const std::string name = ost::CodePageDisplayName(codePage);
    if (codePage == ost::kCodePageUtf8 && name.empty())
        return QStringLiteral("UTF-8");
    return name.empty() ? QString::number(codePage) : QString::fromStdString(name);
}

} // namespace

OpenNonstandardFileDialog::OpenNonstandardFileDialog(OpenNonstandardFileRequest& request,
                                                     QWidget* parent)
    : QDialog(parent), m_request(request)
{
    namespace text = nonstandard_text;
    setWindowTitle(QString::fromUtf8(text::kTitle));

    m_noColumnNames = new QCheckBox(QString::fromUtf8(text::kNoColumnNames), this);
    m_noColumnNames->setChecked(request.noColumnNames);
    m_noColumnNames->setToolTip(HelpTip(text::kNoColumnNamesHelpTitle, text::kNoColumnNamesHelp));

    m_separator = new QComboBox(this);
    int selected = 0;
    for (const SeparatorChoice& choice : NonstandardSeparatorChoices()) {
        if (choice.value == request.separator)
            selected = m_separator->count();
        m_separator->addItem(QString::fromUtf8(choice.label), QVariant(int(choice.value)));
    }
    m_separator->setCurrentIndex(selected);
    m_separator->setToolTip(HelpTip(text::kSeparatorHelpTitle, text::kSeparatorHelp));

    m_useCharacterSet = new QCheckBox(QString::fromUtf8(text::kCharacterSet), this);
    m_useCharacterSet->setChecked(request.useCharacterSet);
    m_useCharacterSet->setToolTip(HelpTip(text::kCharacterSetHelpTitle, text::kCharacterSetHelp));
    m_codePage = new QComboBox(this);
    for (std::uint32_t codePage : request.codePages) {
        m_codePage->addItem(CodePageLabel(codePage), QVariant(uint(codePage)));
        if (codePage == request.codePage)
            m_codePage->setCurrentIndex(m_codePage->count() - 1);
    }
    m_codePage->setEnabled(request.useCharacterSet);
    m_codePage->setToolTip(HelpTip(text::kCharacterSetHelpTitle, text::kCodePageHelp));
    connect(m_useCharacterSet, &QCheckBox::toggled, m_codePage, &QWidget::setEnabled);

    m_backslashEscape = new QCheckBox(QString::fromUtf8(text::kBackslashEscape), this);
    m_backslashEscape->setChecked(request.backslashEscape);
    m_backslashEscape->setToolTip(
        HelpTip(text::kBackslashEscapeHelpTitle, text::kBackslashEscapeHelp));

    m_ignoreComments = new QCheckBox(QString::fromUtf8(text::kIgnoreComments), this);
    m_ignoreComments->setChecked(request.ignoreComments);
    m_ignoreComments->setToolTip(
        HelpTip(text::kIgnoreCommentsHelpTitle, text::kIgnoreCommentsHelp));

    auto* form = new QFormLayout;
    form->addRow(m_noColumnNames);
    form->addRow(QString::fromUtf8(text::kSeparator), m_separator);
    form->addRow(m_useCharacterSet, m_codePage);
    form->addRow(m_backslashEscape);
    form->addRow(m_ignoreComments);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

void OpenNonstandardFileDialog::accept()
{
    m_request.noColumnNames = m_noColumnNames->isChecked();
    m_request.separator = static_cast<char>(m_separator->currentData().toInt());
    m_request.useCharacterSet = m_useCharacterSet->isChecked();
    if (m_codePage->currentIndex() >= 0)
        m_request.codePage = m_codePage->currentData().toUInt();
    m_request.backslashEscape = m_backslashEscape->isChecked();
    m_request.ignoreComments = m_ignoreComments->isChecked();
    QDialog::accept();
}

bool QtDocumentDialogs::OpenNonstandardFile(OpenNonstandardFileRequest& request)
{
    OpenNonstandardFileDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

} // namespace quirnel
