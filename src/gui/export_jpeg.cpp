// export_jpeg.cpp — the graph rendered into a 32-bit image and compressed row by row with libjpeg.
#include "gui/export_jpeg.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <vector>

// jpeglib.h needs FILE and size_t declared before it.
#include <jpeglib.h>

#include "exec/open_without_waiting.h"
#include "graph/graph_state.h"
#include "gui/graph_painter.h"

namespace tl::gui {
namespace {

constexpr const char* caption_graph = "Tessaline Graph";
constexpr const char* caption_jpeg = "Tessaline JPEG";
constexpr const char* text_created = "JPEG file was successfully created.";
constexpr const char* text_no_memory =
    "Unable to create bitmap in memory\nCould be not enough memory.\nTry a smaller resolution or lower quality.";

/// libjpeg's standard error manager, except that a fatal error returns to
/// the compressing function instead of ending the process (a full disk must
/// not take the user's session with it). libjpeg offers no other way back
/// than a jump; it is confined to compress_image below, which holds nothing
/// that needs unwinding.
struct JpegErrors {
    jpeg_error_mgr standard;
    std::jmp_buf back;
    char text[JMSG_LENGTH_MAX];
};

extern "C" void jpeg_error_back(j_common_ptr cinfo) {
    auto* errors = reinterpret_cast<JpegErrors*>(cinfo->err);
    (*cinfo->err->format_message)(cinfo, errors->text);
    std::longjmp(errors->back, 1);
}

enum class CompressResult { done, cannot_open, failed };

/// Compresses `image` (32-bit pixels, blue-green-red-unused in memory) into
/// `file` through libjpeg's standard calls: error manager, compressor,
/// stdio destination, defaults, quality with baseline forced, start with
/// all tables, the rows from the top, finish. On every way out the started
/// compression is finished or abandoned, the file closed and the compressor
/// destroyed, in that order. `rgb_row` holds 3 bytes per pixel plus 3.
CompressResult compress_image(const QImage& image, const char* file, int quality, unsigned char* rgb_row,
                              char* error_text) {
    jpeg_compress_struct cinfo;
    JpegErrors errors;
    cinfo.err = jpeg_std_error(&errors.standard);
    errors.standard.error_exit = jpeg_error_back;
    errors.text[0] = 0;
    // Both are read after a jump back: kept in memory, not in registers.
    std::FILE* volatile out = nullptr;
    volatile bool started = false;
    if (setjmp(errors.back) != 0) {
        // A fatal libjpeg error: what was taken is given back, in order.
        if (started) jpeg_abort_compress(&cinfo);
        if (out != nullptr) std::fclose(out);
        jpeg_destroy_compress(&cinfo);
        std::snprintf(error_text, JMSG_LENGTH_MAX, "%s", errors.text);
        return CompressResult::failed;
    }
    jpeg_create_compress(&cinfo);
    out = open_without_waiting(file, "wb");
    if (out == nullptr) {
        jpeg_destroy_compress(&cinfo);
        return CompressResult::cannot_open;
    }
    jpeg_stdio_dest(&cinfo, out);
    cinfo.image_width = static_cast<JDIMENSION>(image.width());
    cinfo.image_height = static_cast<JDIMENSION>(image.height());
    cinfo.input_components = 3;
    cinfo.in_color_space = JCS_RGB;
    jpeg_set_defaults(&cinfo);
    jpeg_set_quality(&cinfo, quality, TRUE);
    jpeg_start_compress(&cinfo, TRUE);
    started = true;
    const int width = image.width();
    for (int y = 0; y < image.height(); ++y) {
        const auto* pixel = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        unsigned char* o = rgb_row;
        for (int x = 0; x < width; ++x, o += 3) {
            o[0] = static_cast<unsigned char>(qRed(pixel[x]));
            o[1] = static_cast<unsigned char>(qGreen(pixel[x]));
            o[2] = static_cast<unsigned char>(qBlue(pixel[x]));
        }
        JSAMPROW row = rgb_row;
        (void)jpeg_write_scanlines(&cinfo, &row, 1);
    }
    jpeg_finish_compress(&cinfo);
    started = false;
    std::FILE* f = out;
    out = nullptr;
    const bool closed = std::fclose(f) == 0;
    jpeg_destroy_compress(&cinfo);
    if (!closed) {
        std::snprintf(error_text, JMSG_LENGTH_MAX, "Output file write error --- out of disk space?");
        return CompressResult::failed;
    }
    return CompressResult::done;
}

}  // namespace

QSize jpeg_image_size(double width, double height, int resolution) {
    const auto side = [resolution](double inches) {
        const double v = resolution * inches + 0.5;
        // Beyond what any image can hold: the allocation then fails as "not enough memory".
        return static_cast<int>(std::clamp(v, 0.0, 1e9));
    };
    return QSize(side(width), side(height));
}

int write_graph_jpeg(const JpegChoice& choice, const ExportMessage& tell) {
    const GraphSettings& s = graph.settings;
    const int quality = std::clamp(choice.quality, jpeg_quality_lowest, jpeg_quality_highest);
    const int resolution = std::clamp(choice.resolution, jpeg_resolution_lowest, jpeg_resolution_highest);
    const QSize size = jpeg_image_size(s.width, s.height, resolution);

    // The row buffer first, the image after it: released in the reverse order.
    std::vector<unsigned char> rgb_row;
    QImage image;
    const long long bytes = static_cast<long long>(size.width()) * size.height() * 4;
    if (size.width() >= 1 && size.height() >= 1 && bytes < (1LL << 31) - 1) {
        rgb_row.resize(static_cast<std::size_t>(size.width()) * 3 + 3);
        image = QImage(size, QImage::Format_RGB32);
    }
    if (image.isNull()) {
        tell(caption_graph, text_no_memory, true);
        return -1;
    }
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        GraphPaintState state;
        // Pixels per inch: the image's size over the graph's, each way.
        const int rc = paint_graph(painter, size.width() / s.width, size.height() / s.height, target_image, state);
        if (rc < 0) {
            tell(caption_graph, "Horizontal or Vertical Scale is too small", true);
            return -1;
        }
    }

    char error_text[JMSG_LENGTH_MAX] = {};
    switch (compress_image(image, choice.file.c_str(), quality, rgb_row.data(), error_text)) {
        case CompressResult::done: tell(caption_graph, text_created, false); return 0;
        case CompressResult::cannot_open: {
            std::string text = "can't open " + choice.file + "\n";
            tell(caption_jpeg, text, true);
            return -1;
        }
        case CompressResult::failed: tell(caption_jpeg, std::string(error_text) + "\n" + choice.file, true); return -1;
    }
    return -1;
}

}  // namespace tl::gui
