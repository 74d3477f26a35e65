#pragma once
// The bytes that running instances exchange to find out which of them shows a document. Every
// instance listens on a local socket named after the window class; a request is a code and a
// UTF-16 path, the answer one number.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quirnel {

inline constexpr const char* kWindowClassName = "Quirnel Window Class";
/// "Do you have this document open?" The answer is non-zero for yes.
inline constexpr std::uint32_t kRequestHasDocument = 16011;
/// "Bring your window to the foreground." Answered with 1 once done.
inline constexpr std::uint32_t kRequestActivate = 16012;
inline constexpr int kMaxInstances = 512;
/// A path is sent with at most this many UTF-16 units.
inline constexpr int kMaxRequestPathLength = 255;

struct InstanceRequest
{
    std::uint32_t code = 0;
    std::u16string path;
};

/// The class name made safe for a socket name: anything but letters and digits becomes '_'.
std::string SanitizedClassName(std::string_view className);

/// "<sanitised class>-<user>-<pid>"; every instance of one user shares the prefix.
std::string InstanceSocketName(std::string_view className, const std::string& user, long pid);
/// The prefix that all sockets of this class and user start with.
std::string InstanceSocketPrefix(std::string_view className, const std::string& user);

/// The path cut to its first 255 characters.
std::u16string CutRequestPath(std::u16string_view path);

/// code (4 bytes), path length in units (4 bytes), path (UTF-16LE); little-endian throughout.
std::string EncodeRequest(const InstanceRequest& request);
/// Decodes a request from the front of `bytes`. nullopt while incomplete; *consumed tells how
/// many bytes made it. A malformed length (above the cut) sets *malformed.
std::optional<InstanceRequest> DecodeRequest(std::string_view bytes, std::size_t* consumed,
                                             bool* malformed);

std::string EncodeAnswer(std::int32_t answer);
std::optional<std::int32_t> DecodeAnswer(std::string_view bytes);

/// Whether the document at `openPath` is the one asked about. Paths are compared after the
/// cut the request applies, so a long path still matches its own cut form.
bool IsSameDocument(std::u16string_view requestPath, std::u16string_view openPath);

} // namespace quirnel
