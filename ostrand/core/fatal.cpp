#include "ostrand/core/fatal.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace ost {
namespace {

FailureReporter g_reporter = &ReportToStandardError;
FatalCallback g_callback = nullptr;
// Process-wide: a failure inside the report (or on another thread while reporting) must not
// start a second report.
std::atomic<bool> g_reporting{false};

[[noreturn]] void Report(const char* message)
{
    if (g_reporting.exchange(true))
        std::abort();
    try {
        if (g_reporter)
            g_reporter(message);
    } catch (...) {
        // The report is best effort; whatever it throws must not hide the original failure.
    }
    if (g_callback)
        g_callback(message);
    std::abort();
}

} // namespace

void ReportToStandardError(const char* message)
{
    std::fputs(message, stderr);
    std::fputs("\n", stderr);
    std::fflush(stderr);
}

void SetFailureReporter(FailureReporter reporter)
{
    g_reporter = reporter;
}
FailureReporter CurrentFailureReporter()
{
    return g_reporter;
}
void SetFatalCallback(FatalCallback callback)
{
    g_callback = callback;
}

void FatalError(const char* format, ...)
{
    char buffer[kFatalMessageCapacity];
    va_list args;
    va_start(args, format);
    std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    Report(buffer);
}

void InternalAssertion(const char* module, int line)
{
    FatalError("Internal Fatal Error\r\nModule: %s\r\nLine: %d", module, line);
}

} // namespace ost
