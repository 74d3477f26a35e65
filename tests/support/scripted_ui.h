#pragma once
// A UserInterface that answers from a script, for tests. Every box is recorded; a box nobody
// expected, or an expectation left over at the end, fails the running test.

#include "ostrand/core/user_interface.h"

#include <deque>
#include <string>
#include <vector>

namespace quirnel::test {

class ScriptedUi : public ost::UserInterface
{
public:
    struct Expectation
    {
        std::string title;
        std::string text;
        int answer = ost::kButtonOk;
        /// When set, the check box (if any) is answered with this value.
        int checkBox = -1;
    };

    ScriptedUi() = default;
    ScriptedUi(const ScriptedUi&) = delete;
    ScriptedUi& operator=(const ScriptedUi&) = delete;
    ~ScriptedUi() override;

    /// The next box must have exactly this title and text; it is answered with `answer`.
    ScriptedUi& Expect(std::string title, std::string text, int answer = ost::kButtonOk);
    /// The box just expected must carry a check box, which is answered with `checked`.
    ScriptedUi& CheckBox(bool checked);
    /// Cancels the progress display at its n-th update (1-based); 0 never cancels.
    void CancelProgressAt(int update) { m_cancelAt = update; }

    int MessageBox(const ost::MessageBoxRequest& request) override;
    void Beep() override { ++m_beeps; }
    void BeginProgress(const std::string& text) override;
    bool UpdateProgress(double fraction) override;
    void EndProgress() override { m_progressOpen = false; }

    const std::vector<ost::MessageBoxRequest>& Shown() const { return m_shown; }
    int Beeps() const { return m_beeps; }
    const std::vector<std::string>& ProgressTexts() const { return m_progressTexts; }
    int ProgressUpdates() const { return m_updates; }
    bool ProgressOpen() const { return m_progressOpen; }
    /// Fails the test if expectations are left; called by the destructor too.
    void VerifyAllUsed();

private:
    std::deque<Expectation> m_expected;
    std::vector<ost::MessageBoxRequest> m_shown;
    std::vector<std::string> m_progressTexts;
    int m_beeps = 0;
    int m_updates = 0;
    int m_cancelAt = 0;
    bool m_progressOpen = false;
};

} // namespace quirnel::test
