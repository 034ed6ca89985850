// export_jpeg.h — the graph as a JPEG file: rendered into a memory image, compressed with libjpeg.
#pragma once

#include <QSize>
#include <functional>
#include <string>
#include <string_view>

namespace tl::gui {

/// Tells the user something: a message box, or a line in batch mode.
/// `failure` is false for the news that a file was made.
using ExportMessage = std::function<void(std::string_view caption, std::string_view text, bool failure)>;

/// What the JPEG dialog settles: the file, libjpeg's quality and the pixels per inch.
struct JpegChoice {
    std::string file;
    int quality = 75;
    int resolution = 96;
};

inline constexpr int jpeg_quality_lowest = 25;
inline constexpr int jpeg_quality_highest = 100;
inline constexpr int jpeg_resolution_lowest = 25;
inline constexpr int jpeg_resolution_highest = 600;
/// Longest file name the dialog takes.
inline constexpr int jpeg_file_name_longest = 259;

/// The image of a graph of `width` by `height` inches at `resolution`
/// pixels per inch: each side is resolution times inches, rounded.
[[nodiscard]] QSize jpeg_image_size(double width, double height, int resolution);

/// Writes the open graph to `choice.file` (quality and resolution clamped).
/// Says "JPEG file was successfully created." through `tell` and returns 0;
/// after a failure says why ("can't open NAME", not enough memory, a write
/// error) and returns -1. The graph's surface is left laid out for the
/// image: the caller repaints the screen.
[[nodiscard]] int write_graph_jpeg(const JpegChoice& choice, const ExportMessage& tell);

}  // namespace tl::gui
