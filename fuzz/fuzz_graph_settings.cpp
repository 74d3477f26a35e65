// Reads any bytes as graph.xml. Whatever was understood must be written so that reading it
// back gives the same settings, and writing those again gives the same bytes.

#include "view/graph_window_settings.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

bool Same(const quirnel::GraphWindowSettings& a, const quirnel::GraphWindowSettings& b)
{
    return a.horizontalLines == b.horizontalLines && a.verticalLines == b.verticalLines &&
           a.style == b.style && a.hasPosition == b.hasPosition &&
           (!a.hasPosition ||
            (a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const quirnel::GraphWindowSettings read = quirnel::ParseGraphWindowSettings(
        std::string_view(reinterpret_cast<const char*>(data), size));
    const std::string written = quirnel::FormatGraphWindowSettings(read);
    const quirnel::GraphWindowSettings back = quirnel::ParseGraphWindowSettings(written);
    if (!Same(read, back) || quirnel::FormatGraphWindowSettings(back) != written)
        std::abort();
    return 0;
}
