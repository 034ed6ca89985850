// export_emf_device.h — a QPaintDevice that records QPainter's drawing as an enhanced metafile (.emf) through libEMF.
//
// The painter draws on it as on any surface; its paint engine turns paths,
// polygons and text into the metafile's GDI records: pens and brushes,
// paths stroked and filled, polylines and text runs with their fonts. The
// picture is drawn in whole pixels at the reference device's logical pixels
// per inch, and an anisotropic mapping fits it into the frame rectangle of
// the graph's size. Enhanced metafiles know no transparency:
// a translucent colour is mixed with the backdrop colour the device is
// given. Clipping to rectangles is done here, before the records are
// written (a line is cut at the clip's edges; a text whose start lies
// outside it is left out).
#pragma once

#include <QColor>
#include <QPaintDevice>
#include <cstdio>
#include <memory>
#include <string>

namespace tl::gui {

class EmfPaintEngine;

class EmfPaintDevice final : public QPaintDevice {
public:
    /// Creates `file` for a picture of `width` by `height` inches; ok() is
    /// false when it cannot be created.
    EmfPaintDevice(const std::string& file, double width, double height, QColor backdrop);
    ~EmfPaintDevice() override;
    EmfPaintDevice(const EmfPaintDevice&) = delete;
    EmfPaintDevice& operator=(const EmfPaintDevice&) = delete;

    bool ok() const { return dc_ != 0; }
    /// Pixels per inch of the surface (the reference device's logical ones).
    double ppi() const { return ppi_; }
    /// Writes the records out and closes the file; false when that failed.
    /// Painting must have ended.
    bool close();

    QPaintEngine* paintEngine() const override;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    friend class EmfPaintEngine;
    unsigned int dc_ = 0;  // the metafile's device context (a GDI handle)
    std::FILE* file_ = nullptr;
    double width_in_;
    double height_in_;
    double ppi_ = 96.0;
    int width_px_ = 1;
    int height_px_ = 1;
    QColor backdrop_;
    std::unique_ptr<EmfPaintEngine> engine_;
};

}  // namespace tl::gui
