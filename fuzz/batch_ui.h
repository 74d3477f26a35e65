#pragma once
// A user interface for fuzz targets: messages are counted, the comment question gets the
// answer chosen by the input, and loads are never cancelled.

#include "ostrand/core/user_interface.h"

namespace quirnel::fuzz {

class BatchUi : public ost::UserInterface
{
public:
    explicit BatchUi(bool answerYes = false) : m_answerYes(answerYes) {}

    int MessageBox(const ost::MessageBoxRequest& request) override
    {
        ++messages;
        if (request.buttons & ost::kButtonNo)
            return m_answerYes ? ost::kButtonYes : ost::kButtonNo;
        return ost::kButtonOk;
    }
    void Beep() override {}
    void BeginProgress(const std::string&) override {}
    bool UpdateProgress(double) override { return true; }
    void EndProgress() override {}

    int messages = 0;

private:
    bool m_answerYes;
};

} // namespace quirnel::fuzz
