#include "ostrand/core/clipboard.h"
#include "ostrand/image/image_file.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/temp_dir.h"
#include "view/graph_capture.h"

#include <gtest/gtest.h>

#include <map>

namespace quirnel::test {
namespace {

constexpr const char* kTitle = "Capture Graph Image";
constexpr const char* kQuestion = "How would you like to capture the graph image?";
constexpr int kClipboardButton = ost::kFirstExtraButtonId;
constexpr int kFileButton = ost::kFirstExtraButtonId + 1;
constexpr int kPrintButton = ost::kFirstExtraButtonId + 2;

/// A 590 by 440 picture: a blue diagonal on white, so that rows and columns differ.
ost::RgbaImage Picture(int width = 590, int height = 440)
{
    ost::RgbaImage image;
    image.width = width;
    image.height = height;
    image.pixels.assign(static_cast<std::size_t>(width) * height * 4, 255);
    for (int x = 0; x < std::min(width, height); ++x) {
        std::uint8_t* p = &image.pixels[(static_cast<std::size_t>(x) * width + x) * 4];
        p[0] = 0;
        p[1] = 0;
    }
    return image;
}

class FakeHost : public GraphCaptureHost
{
public:
    ost::RgbaImage Grab() override { return image; }
    std::optional<std::string> AskImagePath() override { return path; }
    bool PrintImage(const ost::RgbaImage& printed) override
    {
        printedWidth = printed.width;
        return true;
    }
    ost::RgbaImage image = Picture();
    std::optional<std::string> path;
    int printedWidth = 0;
};

class MapClipboard : public ost::Clipboard
{
public:
    bool Write(const std::vector<ost::ClipboardItem>& items) override
    {
        for (const auto& item : items)
            formats[item.format] = item.data;
        return true;
    }
    std::optional<std::string> Read(std::string_view format) override
    {
        auto it = formats.find(std::string(format));
        return it == formats.end() ? std::nullopt : std::optional<std::string>(it->second);
    }
    std::map<std::string, std::string> formats;
};

struct GraphCapture : ::testing::Test
{
    ScriptedUi ui;
    MapClipboard clipboard;
    FakeHost host;
    TempDir dir;
};

void ExpectSamePicture(const ost::RgbaImage& read, const ost::RgbaImage& written)
{
    ASSERT_EQ(read.width, written.width);
    ASSERT_EQ(read.height, written.height);
    // Top-left is on the diagonal (blue), top-right is white: the rows were not flipped.
    EXPECT_EQ(read.pixels[0], 0);
    EXPECT_EQ(read.pixels[2], 255);
    EXPECT_EQ(read.pixels[(written.width - 1) * 4], 255);
}

TEST_F(GraphCapture, SavesAPngFileThatReadsBackWithTheGraphsSize)
{
    host.path = (dir / "graph.png").string();
    ui.Expect(kTitle, kQuestion, kFileButton);
    EXPECT_EQ(CaptureGraphImage(ui, clipboard, host), CaptureResult::Saved);
    const std::optional<ost::RgbaImage> read = ost::LoadImage(dir / "graph.png");
    ASSERT_TRUE(read);
    ExpectSamePicture(*read, host.image);
    EXPECT_EQ(read->pixels[3], 255);
    EXPECT_EQ(dir.Entries(), std::vector<std::string>{"graph.png"});
}

TEST_F(GraphCapture, EachFormatFollowsTheExtensionAndAPlainNameBecomesPng)
{
    for (const char* name : {"a.BMP", "b.jpg", "c.jpeg", "d.tif", "e.TIFF", "plain"}) {
        SCOPED_TRACE(name);
        host.path = (dir / name).string();
        ui.Expect(kTitle, kQuestion, kFileButton);
        ASSERT_EQ(CaptureGraphImage(ui, clipboard, host), CaptureResult::Saved);
    }
    EXPECT_EQ(dir.Entries(), (std::vector<std::string>{"a.BMP", "b.jpg", "c.jpeg", "d.tif",
                                                       "e.TIFF", "plain.png"}));
    for (const std::string& name : dir.Entries()) {
        SCOPED_TRACE(name);
        const std::optional<ost::RgbaImage> read = ost::LoadImage(dir / name);
        ASSERT_TRUE(read);
        EXPECT_EQ(read->width, 590);
        EXPECT_EQ(read->height, 440);
    }
    EXPECT_EQ(ost::ImageFormatFromPath(dir / "x.gif"), std::nullopt);
}

TEST_F(GraphCapture, AFailedSaveSaysWhyAndLeavesNoFile)
{
    host.path = (dir / "missing" / "graph.png").string();
    ui.Expect(kTitle, kQuestion, kFileButton);
    ui.Expect("Error", "Failed to save the image file.\r\n\r\nNo such file or directory");
    EXPECT_EQ(CaptureGraphImage(ui, clipboard, host), CaptureResult::Failed);

    host.path = (dir / "empty.png").string();
    host.image = ost::RgbaImage();
    ui.Expect(kTitle, kQuestion, kFileButton);
    ui.Expect("Error", "Failed to save the image file.\r\n\r\nThe image is empty.");
    EXPECT_EQ(CaptureGraphImage(ui, clipboard, host), CaptureResult::Failed);
    EXPECT_TRUE(dir.Entries().empty());
}

TEST_F(GraphCapture, CopiesAPngToTheClipboard)
{
    ui.Expect(kTitle, kQuestion, kClipboardButton);
    EXPECT_EQ(CaptureGraphImage(ui, clipboard, host), CaptureResult::Copied);
    ASSERT_TRUE(clipboard.formats.count("image/png"));
    WriteFile(dir / "copied.png", clipboard.formats["image/png"]);
    const std::optional<ost::RgbaImage> read = ost::LoadImage(dir / "copied.png");
    ASSERT_TRUE(read);
    ExpectSamePicture(*read, host.image);
}

TEST_F(GraphCapture, PrintsOrCancelsWithoutTouchingFiles)
{
    ui.Expect(kTitle, kQuestion, kPrintButton);
    EXPECT_EQ(CaptureGraphImage(ui, clipboard, host), CaptureResult::Printed);
    EXPECT_EQ(host.printedWidth, 590);
    ui.Expect(kTitle, kQuestion, ost::kButtonCancel);
    EXPECT_EQ(CaptureGraphImage(ui, clipboard, host), CaptureResult::Cancelled);
    host.path.reset();
    ui.Expect(kTitle, kQuestion, kFileButton);
    EXPECT_EQ(CaptureGraphImage(ui, clipboard, host), CaptureResult::Cancelled);
    EXPECT_TRUE(clipboard.formats.empty());
    EXPECT_TRUE(dir.Entries().empty());
}

} // namespace
} // namespace quirnel::test
