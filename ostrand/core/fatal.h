#pragma once
// The framework's way of ending the program when an internal invariant breaks. Every entry here
// formats a message, hands it to the failure reporter and never returns.

#include <cstddef>
#include <string>

namespace ost {

/// Messages longer than this many characters are cut before they are reported.
inline constexpr std::size_t kFatalMessageCapacity = 4096;

using FailureReporter = void (*)(const char* message);
using FatalCallback = void (*)(const char* message);

/// Formats printf-style into a 4,096-character buffer, reports, calls the application's callback
/// and terminates abnormally. A second fatal error while one is being reported ends at once.
[[noreturn]] void FatalError(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// "Internal Fatal Error" at a source module and line.
[[noreturn]] void InternalAssertion(const char* module, int line);

/// Who shows the report. The default writes to standard error; the GUI installs a dialog.
void SetFailureReporter(FailureReporter reporter);
FailureReporter CurrentFailureReporter();
void ReportToStandardError(const char* message);

/// Called after the report with the message, e.g. to save what can be saved.
void SetFatalCallback(FatalCallback callback);

} // namespace ost

#define OST_ASSERT(condition)                                                                      \
    do {                                                                                           \
        if (!(condition))                                                                          \
            ::ost::InternalAssertion(__FILE__, __LINE__);                                          \
    } while (false)
