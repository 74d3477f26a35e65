#include "ostrand/core/byte_size.h"

#include <cstdio>

namespace ost {

std::string FormatByteSize(std::int64_t n)
{
    char text[64];
    constexpr std::int64_t kKilo = 1024;
    constexpr std::int64_t kMega = kKilo * 1024;
    constexpr std::int64_t kGiga = kMega * 1024;
    constexpr std::int64_t kTera = kGiga * 1024;
    const double value = static_cast<double>(n);
    // The rounding of "%.2f" is kept as it is: 1,048,575 bytes reads "1024.00 KB".
    if (n < kKilo)
        std::snprintf(text, sizeof text, "%lld bytes", static_cast<long long>(n));
    else if (n < kMega)
        std::snprintf(text, sizeof text, "%.2f KB", value / kKilo);
    else if (n < kGiga)
        std::snprintf(text, sizeof text, "%.2f MB", value / kMega);
    else if (n < kTera)
        std::snprintf(text, sizeof text, "%.2f GB", value / kGiga);
    else
        std::snprintf(text, sizeof text, "%.2f TB", value / kTera);
    return text;
}

} // namespace ost
