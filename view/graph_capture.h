#pragma once
// "Capture Graph Image": the graph as a picture, copied to the clipboard, saved to a file
// (PNG, BMP, JPEG or TIFF by its extension) or printed, as the user chooses.

#include <optional>
#include <string>

namespace ost {
class Clipboard;
class UserInterface;
struct RgbaImage;
} // namespace ost

namespace quirnel {

inline constexpr const char* kCaptureGraphImageLabel = "Capture Graph Image";
inline constexpr const char* kCaptureGraphImageTip =
    "Copy the image to the clipboard, save it to a file, or print it.";
/// The clipboard format the image goes under.
inline constexpr const char* kClipboardPng = "image/png";

/// What only the graph window can do for the capture.
class GraphCaptureHost
{
public:
    virtual ~GraphCaptureHost() = default;
    /// The graph as drawn now.
    virtual ost::RgbaImage Grab() = 0;
    /// The file to save to (UTF-8 path); nullopt when the user cancelled.
    virtual std::optional<std::string> AskImagePath() = 0;
    /// Prints through the system's print dialog; false when cancelled or failed.
    virtual bool PrintImage(const ost::RgbaImage& image) = 0;
};

/// What the capture did, for the window and for tests.
enum class CaptureResult
{
    Cancelled,
    Copied,
    Saved,
    Printed,
    Failed,
};

/// Asks how to capture and does it. A path without a known extension gets ".png".
CaptureResult CaptureGraphImage(ost::UserInterface& ui, ost::Clipboard& clipboard,
                                GraphCaptureHost& host);

} // namespace quirnel
