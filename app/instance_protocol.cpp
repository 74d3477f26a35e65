#include "app/instance_protocol.h"

#include <cctype>

namespace quirnel {

namespace {

void PutUint32(std::string& out, std::uint32_t value)
{
    for (int shift = 0; shift < 32; shift += 8)
        out += static_cast<char>((value >> shift) & 0xFF);
}

std::uint32_t GetUint32(std::string_view bytes, std::size_t at)
{
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i)
        value |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
    return value;
}

} // namespace

std::string SanitizedClassName(std::string_view className)
{
    std::string out;
    for (char c : className)
        out += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return out;
}

std::string InstanceSocketPrefix(std::string_view className, const std::string& user)
{
    return SanitizedClassName(className) + "-" + SanitizedClassName(user) + "-";
}

std::string InstanceSocketName(std::string_view className, const std::string& user, long pid)
{
    return InstanceSocketPrefix(className, user) + std::to_string(pid);
}

std::u16string CutRequestPath(std::u16string_view path)
{
    return std::u16string(path.substr(0, kMaxRequestPathLength));
}

std::string EncodeRequest(const InstanceRequest& request)
{
    std::u16string path = CutRequestPath(request.path);
    std::string out;
    PutUint32(out, request.code);
    PutUint32(out, static_cast<std::uint32_t>(path.size()));
    for (char16_t unit : path) {
        out += static_cast<char>(unit & 0xFF);
        out += static_cast<char>(unit >> 8);
    }
    return out;
}

std::optional<InstanceRequest> DecodeRequest(std::string_view bytes, std::size_t* consumed,
                                             bool* malformed)
{
    if (malformed)
        *malformed = false;
    if (consumed)
        *consumed = 0;
    if (bytes.size() < 8)
        return std::nullopt;
    InstanceRequest request;
    request.code = GetUint32(bytes, 0);
    std::uint32_t length = GetUint32(bytes, 4);
    if (length > static_cast<std::uint32_t>(kMaxRequestPathLength)) {
        if (malformed)
            *malformed = true;
        return std::nullopt;
    }
    if (bytes.size() < 8 + 2 * static_cast<std::size_t>(length))
        return std::nullopt;
    for (std::uint32_t i = 0; i < length; ++i) {
        auto low = static_cast<unsigned char>(bytes[8 + 2 * i]);
        auto high = static_cast<unsigned char>(bytes[8 + 2 * i + 1]);
        request.path += static_cast<char16_t>(low | (high << 8));
    }
    if (consumed)
        *consumed = 8 + 2 * static_cast<std::size_t>(length);
    return request;
}

std::string EncodeAnswer(std::int32_t answer)
{
    std::string out;
    PutUint32(out, static_cast<std::uint32_t>(answer));
    return out;
}

std::optional<std::int32_t> DecodeAnswer(std::string_view bytes)
{
    if (bytes.size() < 4)
        return std::nullopt;
    return static_cast<std::int32_t>(GetUint32(bytes, 0));
}

bool IsSameDocument(std::u16string_view requestPath, std::u16string_view openPath)
{
    if (openPath.empty() || requestPath.empty())
        return false;
    return CutRequestPath(requestPath) == CutRequestPath(openPath);
}

} // namespace quirnel
