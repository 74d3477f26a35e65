#pragma once
// Raster images written and read through FreeImage: captured graph and window images saved as
// PNG, BMP, JPEG or TIFF, or encoded in memory for the clipboard.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace ost {

/// 8-bit red, green, blue and alpha per pixel, rows from the top.
struct RgbaImage
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels; ///< width * height * 4 bytes
};

enum class ImageFormat
{
    Png,
    Bmp,
    Jpeg,
    Tiff,
};

/// The format a file name asks for by its extension (".png", ".bmp", ".jpg", ".jpeg", ".tif",
/// ".tiff", any case); nullopt for others.
std::optional<ImageFormat> ImageFormatFromPath(const std::filesystem::path& path);

/// Writes the image to `path` through a temporary file beside it, so that a failed write
/// leaves no partial file and keeps what was there. JPEG and BMP drop the alpha channel.
/// False with the reason in `error` on failure.
bool SaveImage(const RgbaImage& image, const std::filesystem::path& path, ImageFormat format,
               std::string& error);

/// The image encoded in the format, for the clipboard; empty on failure.
std::vector<std::uint8_t> EncodeImage(const RgbaImage& image, ImageFormat format);

/// Reads any image FreeImage knows; nullopt when it cannot.
std::optional<RgbaImage> LoadImage(const std::filesystem::path& path);

} // namespace ost
