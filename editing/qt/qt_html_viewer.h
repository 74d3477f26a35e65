#pragma once
// The HTML viewer that prints: a QTextDocument loaded from the temporary HTML file on a worker
// thread, so that the window keeps painting and its progress window can be cancelled while a
// big table is parsed.

#include "editing/print_table.h"

#include <memory>

namespace quirnel {

class QtHtmlViewer : public HtmlViewer
{
public:
    QtHtmlViewer();
    ~QtHtmlViewer() override;

    bool Open(const std::string& path) override;
    int ReadyState() override;
    void Wait(int milliseconds) override;
    bool Print(const PrintJobRequest& job) override;

private:
    struct Load;
    std::shared_ptr<Load> m_load;
};

} // namespace quirnel
