#include "app/instance_protocol.h"

#include <gtest/gtest.h>

namespace quirnel {
namespace {

TEST(InstanceProtocol, RequestRoundTripsThroughPartialReads)
{
    InstanceRequest request{kRequestHasDocument, u"/tmp/\u00e9t\u00e9.csv"};
    std::string bytes = EncodeRequest(request);
    ASSERT_EQ(bytes.size(), 8u + 2 * request.path.size());
    EXPECT_EQ(bytes.substr(0, 4), std::string("\x8b\x3e\x00\x00", 4)); // 16011 little-endian
    for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
        std::size_t consumed = 99;
        EXPECT_FALSE(DecodeRequest(std::string_view(bytes).substr(0, cut), &consumed, nullptr));
        EXPECT_EQ(consumed, 0u);
    }
    std::size_t consumed = 0;
    auto decoded = DecodeRequest(bytes + "tail", &consumed, nullptr);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->code, kRequestHasDocument);
    EXPECT_EQ(decoded->path, request.path);
    EXPECT_EQ(consumed, bytes.size());
}

TEST(InstanceProtocol, LongPathIsCutTo255Characters)
{
    std::u16string longPath(300, u'x');
    auto decoded = DecodeRequest(EncodeRequest({kRequestHasDocument, longPath}), nullptr, nullptr);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->path, std::u16string(255, u'x'));
    EXPECT_TRUE(IsSameDocument(decoded->path, longPath));
}

TEST(InstanceProtocol, OversizedLengthIsMalformed)
{
    std::string bytes = EncodeRequest({kRequestHasDocument, u"a"});
    bytes[4] = '\x00';
    bytes[5] = '\x01'; // 256 units
    bool malformed = false;
    EXPECT_FALSE(DecodeRequest(bytes, nullptr, &malformed));
    EXPECT_TRUE(malformed);
}

TEST(InstanceProtocol, AnswerRoundTrips)
{
    EXPECT_EQ(DecodeAnswer(EncodeAnswer(1)), 1);
    EXPECT_EQ(DecodeAnswer(EncodeAnswer(0)), 0);
    EXPECT_FALSE(DecodeAnswer("abc"));
}

TEST(InstanceProtocol, SocketNamesShareThePerUserPrefix)
{
    EXPECT_EQ(SanitizedClassName("Quirnel Window Class"), "Quirnel_Window_Class");
    std::string name = InstanceSocketName(kWindowClassName, "ann.b", 42);
    EXPECT_EQ(name, "Quirnel_Window_Class-ann_b-42");
    EXPECT_TRUE(name.starts_with(InstanceSocketPrefix(kWindowClassName, "ann.b")));
    EXPECT_FALSE(name.starts_with(InstanceSocketPrefix(kWindowClassName, "ann")));
}

TEST(InstanceProtocol, EmptyPathsNeverMatch)
{
    EXPECT_FALSE(IsSameDocument(u"", u""));
    EXPECT_FALSE(IsSameDocument(u"/a.csv", u""));
    EXPECT_FALSE(IsSameDocument(u"/a.csv", u"/b.csv"));
    EXPECT_TRUE(IsSameDocument(u"/a.csv", u"/a.csv"));
}

} // namespace
} // namespace quirnel
