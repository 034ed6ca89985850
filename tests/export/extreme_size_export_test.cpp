// Outputs of graphs whose size or margins are beyond any page or device
// (GRAPH takes any number): refused or held at the device's bounds, the
// arithmetic defined all the way.
#include <QFile>
#include <QPageLayout>
#include <QPageSize>
#include <QPrinter>

#include "export_support.h"
#include "gui/export_metafile.h"
#include "gui/export_print.h"

namespace tl::test {
namespace {

gui::PageGeometry letter_at_1200() {
    gui::PageGeometry g;
    g.paper_width = 10200;
    g.paper_height = 13200;
    g.printable_width = g.paper_width - 600;
    g.printable_height = g.paper_height - 600;
    g.offset_x = g.offset_y = 300;
    g.ppi_x = g.ppi_y = 1200;
    return g;
}

TEST(PlaceGraphBeyondTheDevice, SizesAndMarginsPastAnIntNeverFit) {
    const gui::PageGeometry page = letter_at_1200();
    for (const double huge : {1e300, 3e6}) {
        EXPECT_FALSE(gui::place_graph(page, huge, 10, -1, -1).fits) << huge;
        EXPECT_FALSE(gui::place_graph(page, 7.5, huge, -1, -1).fits) << huge;
        EXPECT_FALSE(gui::place_graph(page, 7.5, 10, huge, 0.5).fits) << huge;
        EXPECT_FALSE(gui::place_graph(page, 7.5, 10, 0.5, huge).fits) << huge;
    }
    // Any negative margin centres; a graph of a negative size is placed (the
    // painter then finds no room to draw in).
    EXPECT_EQ(gui::place_graph(page, 7.5, 10, -1e300, -1e300).left, gui::place_graph(page, 7.5, 10, -1, -1).left);
    EXPECT_EQ(gui::place_graph(page, -1e300, 10, -1, -1).width, -1000000000);
    // Within an int the numbers are exact: 1700 inches at 1200 pixels per inch.
    const gui::PagePlacement p = gui::place_graph(page, 1.7e3, 1, 0, 0);
    EXPECT_EQ(p.width, 2040001);
    EXPECT_EQ(p.left, -300);
    // The graph as it fits is placed as before.
    const gui::PagePlacement fits = gui::place_graph(page, 7.5, 10, -1, -1);
    EXPECT_TRUE(fits.fits);
    EXPECT_EQ(fits.width, 9001);
    EXPECT_EQ(fits.left, (10200 - 9001) / 2 - 300);
}

TEST_F(ExportTest, AGraphOfAstronomicalSizeIsRefusedByThePrinterAndTheMetafileStaysReadable) {
    draw_sample("width = 1e300, height = 1e300");
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(path("huge.pdf")));
    printer.setPageSize(QPageSize(QPageSize::Letter));
    EXPECT_EQ(gui::print_graph_on(printer, tell), -1);
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0], "Graph Print: Graph does not fit on the page. Check printer mode.");

    // The metafile's frame and extents are held at what its records take;
    // the file is complete and another program reads it.
    told.clear();
    const std::string file = path("huge.emf");
    (void)gui::write_graph_metafile(file, tell);
    ASSERT_EQ(told.size(), 1u);
    QFile emf(QString::fromStdString(file));
    ASSERT_TRUE(emf.open(QIODevice::ReadOnly));
    const QByteArray bytes = emf.readAll();
    ASSERT_GE(bytes.size(), 88);
    EXPECT_EQ(bytes.mid(40, 4), QByteArray(" EMF"));  // the header's signature
    EXPECT_TRUE(run_tool("emf2svg-conv", {"-i", QString::fromStdString(file), "-o",
                                          QString::fromStdString(path("huge.svg"))}));
}

}  // namespace
}  // namespace tl::test
