#pragma once
// What happens when an allocation fails: a fatal report with the requested size, the
// application's advice and a dump of the stack words around the failing call.

#include <cstddef>
#include <string>

namespace ost {

/// Makes the global operator new report failed allocations here instead of throwing.
void InstallOutOfMemoryHandler();
bool OutOfMemoryHandlerInstalled();

/// Text appended after "Advice: " in the report; empty by default.
void SetOutOfMemoryAdvice(std::string advice);

/// The report text without the fatal ending; exposed so the layout can be checked.
std::string FormatOutOfMemoryMessage(std::size_t requestedSize);

[[noreturn]] void OutOfMemory(std::size_t requestedSize);

} // namespace ost
