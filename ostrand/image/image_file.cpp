#include "ostrand/image/image_file.h"

#include <FreeImage.h>
#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace ost {

namespace {

void EnsureInitialised()
{
    // The shared library on this platform does not set itself up; once per process, and
    // never torn down, so that images can be written up to the very end.
    static std::once_flag once;
    std::call_once(once, [] { FreeImage_Initialise(FALSE); });
}

FREE_IMAGE_FORMAT FreeImageFormat(ImageFormat format)
{
    switch (format) {
    case ImageFormat::Bmp:
        return FIF_BMP;
    case ImageFormat::Jpeg:
        return FIF_JPEG;
    case ImageFormat::Tiff:
        return FIF_TIFF;
    case ImageFormat::Png:
        break;
    }
    return FIF_PNG;
}

struct BitmapDeleter
{
    void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};
using Bitmap = std::unique_ptr<FIBITMAP, BitmapDeleter>;

/// A FreeImage bitmap in the layout the format takes: 32 bits with alpha, or 24 for the
/// formats without an alpha channel. nullptr for an empty or inconsistent image.
Bitmap ToBitmap(const RgbaImage& image, ImageFormat format)
{
    if (image.width <= 0 || image.height <= 0 ||
        image.pixels.size() !=
            static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height) * 4)
        return nullptr;
    EnsureInitialised();
    const bool alpha = format == ImageFormat::Png || format == ImageFormat::Tiff;
    Bitmap bitmap(FreeImage_Allocate(image.width, image.height, alpha ? 32 : 24));
    if (!bitmap)
        return nullptr;
    const int bytes = alpha ? 4 : 3;
    for (int y = 0; y < image.height; ++y) {
        // FreeImage keeps the bottom row first.
        BYTE* line = FreeImage_GetScanLine(bitmap.get(), image.height - 1 - y);
        const std::uint8_t* source =
            image.pixels.data() + static_cast<std::size_t>(y) * image.width * 4;
        for (int x = 0; x < image.width; ++x, source += 4, line += bytes) {
            line[FI_RGBA_RED] = source[0];
            line[FI_RGBA_GREEN] = source[1];
            line[FI_RGBA_BLUE] = source[2];
            if (alpha)
                line[FI_RGBA_ALPHA] = source[3];
        }
    }
    return bitmap;
}

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

} // namespace

std::optional<ImageFormat> ImageFormatFromPath(const std::filesystem::path& path)
{
    const std::string extension = Lower(path.extension().string());
    if (extension == ".png")
        return ImageFormat::Png;
    if (extension == ".bmp")
        return ImageFormat::Bmp;
    if (extension == ".jpg" || extension == ".jpeg")
        return ImageFormat::Jpeg;
    if (extension == ".tif" || extension == ".tiff")
        return ImageFormat::Tiff;
    return std::nullopt;
}

bool SaveImage(const RgbaImage& image, const std::filesystem::path& path, ImageFormat format,
               std::string& error)
{
    Bitmap bitmap = ToBitmap(image, format);
    if (!bitmap) {
        error = "The image is empty.";
        return false;
    }
    std::string temporary = path.string() + ".XXXXXX";
    const int descriptor = mkstemp(temporary.data());
    if (descriptor < 0) {
        error = std::strerror(errno);
        return false;
    }
    // mkstemp makes the file private; an image is for sharing.
    fchmod(descriptor, 0644);
    close(descriptor);
    const int flags = format == ImageFormat::Jpeg ? JPEG_QUALITYSUPERB : 0;
    if (!FreeImage_Save(FreeImageFormat(format), bitmap.get(), temporary.c_str(), flags)) {
        std::remove(temporary.c_str());
        error = "The image could not be written.";
        return false;
    }
    if (std::rename(temporary.c_str(), path.c_str()) != 0) {
        error = std::strerror(errno);
        std::remove(temporary.c_str());
        return false;
    }
    return true;
}

std::vector<std::uint8_t> EncodeImage(const RgbaImage& image, ImageFormat format)
{
    std::vector<std::uint8_t> bytes;
    Bitmap bitmap = ToBitmap(image, format);
    if (!bitmap)
        return bytes;
    FIMEMORY* memory = FreeImage_OpenMemory();
    if (!memory)
        return bytes;
    BYTE* data = nullptr;
    DWORD size = 0;
    if (FreeImage_SaveToMemory(FreeImageFormat(format), bitmap.get(), memory, 0) &&
        FreeImage_AcquireMemory(memory, &data, &size))
        bytes.assign(data, data + size);
    FreeImage_CloseMemory(memory);
    return bytes;
}

std::optional<RgbaImage> LoadImage(const std::filesystem::path& path)
{
    EnsureInitialised();
    const FREE_IMAGE_FORMAT format = FreeImage_GetFileType(path.c_str(), 0);
    if (format == FIF_UNKNOWN)
        return std::nullopt;
    Bitmap loaded(FreeImage_Load(format, path.c_str(), 0));
    if (!loaded)
        return std::nullopt;
    Bitmap bitmap(FreeImage_ConvertTo32Bits(loaded.get()));
    if (!bitmap)
        return std::nullopt;
    RgbaImage image;
    image.width = static_cast<int>(FreeImage_GetWidth(bitmap.get()));
    image.height = static_cast<int>(FreeImage_GetHeight(bitmap.get()));
    image.pixels.resize(static_cast<std::size_t>(image.width) * image.height * 4);
    for (int y = 0; y < image.height; ++y) {
        const BYTE* line = FreeImage_GetScanLine(bitmap.get(), image.height - 1 - y);
        std::uint8_t* target = image.pixels.data() + static_cast<std::size_t>(y) * image.width * 4;
        for (int x = 0; x < image.width; ++x, line += 4, target += 4) {
            target[0] = line[FI_RGBA_RED];
            target[1] = line[FI_RGBA_GREEN];
            target[2] = line[FI_RGBA_BLUE];
            target[3] = line[FI_RGBA_ALPHA];
        }
    }
    return image;
}

} // namespace ost
