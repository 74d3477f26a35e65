#include "view/graph_capture.h"

#include "ostrand/core/clipboard.h"
#include "ostrand/core/user_interface.h"
#include "ostrand/image/image_file.h"

namespace quirnel {

CaptureResult CaptureGraphImage(ost::UserInterface& ui, ost::Clipboard& clipboard,
                                GraphCaptureHost& host)
{
    const int copy = ost::kFirstExtraButtonId;
    const int save = ost::kFirstExtraButtonId + 1;
    const int print = ost::kFirstExtraButtonId + 2;
    ost::MessageBoxRequest box;
    box.title = kCaptureGraphImageLabel;
    box.text = "How would you like to capture the graph image?";
    box.icon = ost::MessageIcon::Question;
    box.buttons = ost::kButtonCancel;
    box.extraButtons = {{"Clipboard", "Copy the image to the clipboard.", copy},
                        {"File", "Save the image to a file.", save},
                        {"Print", "Print the image.", print}};
    box.defaultButton = copy;
    const int answer = ui.MessageBox(box);

    if (answer == copy) {
        const std::vector<std::uint8_t> png = EncodeImage(host.Grab(), ost::ImageFormat::Png);
        if (png.empty() ||
            !clipboard.Write({{kClipboardPng, std::string(png.begin(), png.end())}})) {
            ui.Message("Error", "The image could not be copied to the clipboard.",
                       ost::MessageIcon::Error);
            return CaptureResult::Failed;
        }
        return CaptureResult::Copied;
    }
    if (answer == save) {
        std::optional<std::string> chosen = host.AskImagePath();
        if (!chosen || chosen->empty())
            return CaptureResult::Cancelled;
        std::filesystem::path path(*chosen);
        std::optional<ost::ImageFormat> format = ost::ImageFormatFromPath(path);
        if (!format) {
            path += ".png";
            format = ost::ImageFormat::Png;
        }
        std::string error;
        if (!ost::SaveImage(host.Grab(), path, *format, error)) {
            ui.Message("Error", "Failed to save the image file.\r\n\r\n" + error,
                       ost::MessageIcon::Error);
            return CaptureResult::Failed;
        }
        return CaptureResult::Saved;
    }
    if (answer == print)
        return host.PrintImage(host.Grab()) ? CaptureResult::Printed : CaptureResult::Cancelled;
    return CaptureResult::Cancelled;
}

} // namespace quirnel
