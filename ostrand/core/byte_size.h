#pragma once
// Byte counts as people read them ("3.10 KB"); shared by messages and the memory sort method.

#include <cstdint>
#include <string>

namespace ost {

/// "%d bytes" below 1,024 (and for negative counts), then KB, MB, GB and TB with "%.2f".
std::string FormatByteSize(std::int64_t bytes);

} // namespace ost
