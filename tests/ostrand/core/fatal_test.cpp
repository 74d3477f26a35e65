#include "ostrand/core/fatal.h"
#include "ostrand/core/out_of_memory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

void CallbackWritesMarker(const char* message)
{
    std::fprintf(stderr, "[callback saw: %s]", message);
}

void ReporterThatFailsAgain(const char*)
{
    std::fputs("[first report]", stderr);
    ost::FatalError("second failure");
}

TEST(FatalErrorDeathTest, ReportsThenCallsTheCallbackThenAborts)
{
    EXPECT_DEATH(
        {
            ost::SetFatalCallback(&CallbackWritesMarker);
            ost::FatalError("disk %s at %d", "gone", 42);
        },
        "disk gone at 42\n\\[callback saw: disk gone at 42\\]");
}

TEST(FatalErrorDeathTest, FailureDuringTheReportEndsWithoutASecondReport)
{
    EXPECT_DEATH(
        {
            ost::SetFailureReporter(&ReporterThatFailsAgain);
            ost::FatalError("first failure");
        },
        "^\\[first report\\]$");
}

TEST(FatalErrorDeathTest, LongMessagesAreCutAt4096Characters)
{
    EXPECT_DEATH(
        {
            const std::string longText(10000, 'x');
            ost::FatalError("%s", longText.c_str());
        },
        "^x{4095}\n$");
}

TEST(FatalErrorDeathTest, InternalAssertionNamesModuleAndLine)
{
    EXPECT_DEATH(ost::InternalAssertion("table_control.cpp", 812),
                 "Internal Fatal Error\r\nModule: table_control.cpp\r\nLine: 812");
    EXPECT_DEATH(OST_ASSERT(1 + 1 == 3), "Module: .*fatal_test.cpp\r\nLine: [0-9]+");
}

TEST(OutOfMemory, MessageHasAdviceSizeAndTenLinesOfEightWords)
{
    ost::SetOutOfMemoryAdvice("Close other programs");
    const std::string message = ost::FormatOutOfMemoryMessage(4096);
    const std::string head = "Out Of Memory.\r\nAdvice: Close other programs\r\n"
                             "Requested size = 4096 (0x00001000)\r\n\r\nStack contents:";
    ASSERT_EQ(head, message.substr(0, head.size()));
    const std::string dump = message.substr(head.size());
    ASSERT_EQ(80u * 9u, dump.size());
    for (int line = 0; line < 10; ++line) {
        EXPECT_EQ('\r', dump[line * 72]);
        for (int word = 1; word < 8; ++word)
            EXPECT_EQ(' ', dump[line * 72 + word * 9]);
    }
    // The dump starts at the first marker, followed by the second.
    EXPECT_EQ("\r11223344 55667788", dump.substr(0, 18));
    ost::SetOutOfMemoryAdvice("");
}

TEST(OutOfMemoryDeathTest, InstalledHandlerReportsAFailedAllocation)
{
    EXPECT_DEATH(
        {
            ost::InstallOutOfMemoryHandler();
            // Larger than any address space: the allocator must fail.
            volatile std::size_t huge = static_cast<std::size_t>(-1) / 2;
            char* p = new char[huge];
            std::printf("%p", static_cast<void*>(p));
        },
        "Out Of Memory\\.\r\nAdvice: \r\nRequested size = ");
}

} // namespace
