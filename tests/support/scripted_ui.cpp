#include "tests/support/scripted_ui.h"

#include <gtest/gtest.h>

namespace quirnel::test {

ScriptedUi::~ScriptedUi()
{
    VerifyAllUsed();
}

ScriptedUi& ScriptedUi::Expect(std::string title, std::string text, int answer)
{
    m_expected.push_back({std::move(title), std::move(text), answer, -1});
    return *this;
}

ScriptedUi& ScriptedUi::CheckBox(bool checked)
{
    if (m_expected.empty())
        ADD_FAILURE() << "CheckBox() without an expected box";
    else
        m_expected.back().checkBox = checked ? 1 : 0;
    return *this;
}

int ScriptedUi::MessageBox(const ost::MessageBoxRequest& request)
{
    m_shown.push_back(request);
    if (m_expected.empty()) {
        ADD_FAILURE() << "unexpected message box\n  title: " << request.title
                      << "\n  text: " << request.text;
        return ost::kButtonCancel;
    }
    Expectation next = m_expected.front();
    m_expected.pop_front();
    EXPECT_EQ(next.title, request.title);
    EXPECT_EQ(next.text, request.text);
    if (next.checkBox >= 0) {
        EXPECT_TRUE(request.checked && !request.checkBoxText.empty())
            << "the box has no check box to answer: " << request.title;
        if (request.checked)
            *request.checked = next.checkBox != 0;
    }
    return next.answer;
}

void ScriptedUi::BeginProgress(const std::string& text)
{
    m_progressTexts.push_back(text);
    m_progressOpen = true;
}

bool ScriptedUi::UpdateProgress(double)
{
    ++m_updates;
    return !(m_cancelAt > 0 && m_updates >= m_cancelAt);
}

void ScriptedUi::VerifyAllUsed()
{
    for (const Expectation& left : m_expected)
        ADD_FAILURE() << "expected message box never shown\n  title: " << left.title
                      << "\n  text: " << left.text;
    m_expected.clear();
}

} // namespace quirnel::test
