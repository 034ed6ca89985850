// Printing: the place on the page, the turn of the sheet, and one PDF page read back by poppler.
#include <QFile>
#include <QPageLayout>
#include <QPageSize>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include "export_support.h"
#include "gui/export_print.h"

namespace tl::test {
namespace {

/// A Letter sheet at 100 pixels per inch, printable but for a quarter inch all round.
gui::PageGeometry letter(bool landscape) {
    gui::PageGeometry g;
    g.paper_width = landscape ? 1100 : 850;
    g.paper_height = landscape ? 850 : 1100;
    g.printable_width = g.paper_width - 50;
    g.printable_height = g.paper_height - 50;
    g.offset_x = g.offset_y = 25;
    g.ppi_x = g.ppi_y = 100;
    return g;
}

TEST(PlaceGraph, ByMarginsOrCentredAndOnlyInsideThePrintableArea) {
    // Centred: (850 - 751) / 2 - 25 = 24.
    gui::PagePlacement p = gui::place_graph(letter(false), 7.5, 10, -1, -1);
    EXPECT_EQ(p.width, 751);
    EXPECT_EQ(p.height, 1001);
    EXPECT_EQ(p.left, 24);
    EXPECT_EQ(p.top, 24);
    EXPECT_TRUE(p.fits);
    // By margins, measured from the sheet's edge.
    p = gui::place_graph(letter(false), 7.5, 10, 0.5, 0.3);
    EXPECT_EQ(p.left, 25);
    EXPECT_EQ(p.top, 5);
    EXPECT_TRUE(p.fits);
    // A margin inside the unprintable strip, or a graph running off the printable area.
    EXPECT_FALSE(gui::place_graph(letter(false), 7.5, 10, 0.1, -1).fits);
    EXPECT_FALSE(gui::place_graph(letter(false), 7.5, 10, 0.8, -1).fits);  // 55 + 751 > 800
    // A landscape graph fits only the turned sheet.
    EXPECT_FALSE(gui::place_graph(letter(false), 10, 7.5, -1, -1).fits);
    EXPECT_TRUE(gui::place_graph(letter(true), 10, 7.5, -1, -1).fits);
}

class PrintExport : public ExportTest {
protected:
    /// A PDF printer on a Letter sheet, portrait, a quarter inch of margins.
    void pdf_printer(QPrinter& printer, const std::string& file) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(QString::fromStdString(file));
        printer.setPageSize(QPageSize(QPageSize::Letter));
        printer.setPageOrientation(QPageLayout::Portrait);
        printer.setPageMargins(QMarginsF(0.25, 0.25, 0.25, 0.25), QPageLayout::Inch);
    }
    /// The PDF's first page as an image at `ppi` (pdftoppm).
    QImage page_image(const std::string& pdf, int ppi) {
        const QString stem = QString::fromStdString(pdf) + ".page";
        (void)tool_output("pdftoppm", {"-png", "-r", QString::number(ppi), "-singlefile", QString::fromStdString(pdf), stem});
        return QImage(stem + ".png").convertToFormat(QImage::Format_RGB32);
    }
};

TEST_F(PrintExport, APortraitGraphIsOnePageInsideTheMarginsAsOnScreen) {
    draw_sample("portrait");
    const std::string file = path("portrait.pdf");
    QPrinter printer(QPrinter::HighResolution);
    pdf_printer(printer, file);
    ASSERT_EQ(gui::print_graph_on(printer, tell), 0);
    EXPECT_TRUE(told.empty());
    const QString info = tool_output("pdfinfo", {QString::fromStdString(file)});
    EXPECT_TRUE(info.contains(QRegularExpression("Pages:\\s+1\\n"))) << info.toStdString();
    EXPECT_TRUE(info.contains(QRegularExpression("Page size:\\s+612 x 792 pts"))) << info.toStdString();
    EXPECT_TRUE(info.contains(QRegularExpression("Title:\\s+Tessaline Graph"))) << info.toStdString();
    // At 100 pixels per inch the graph's 750 by 1000 pixels lie centred
    // on the 850 by 1100 sheet, and are the screen's picture.
    const QImage page = page_image(file, 100);
    ASSERT_EQ(page.size(), QSize(850, 1100));
    EXPECT_EQ(page.pixelColor(20, 20), QColor(Qt::white));  // outside the graph: the paper
    const QImage graph_part = page.copy(50, 50, 750, 1000);
    if (const char* dir = std::getenv("TESSALINE_RENDER_DIR"); dir != nullptr) page.save(QString::fromUtf8(dir) + "/print.png");
    EXPECT_LT(mean_difference(graph_part, screen_image(100)), 6.0);
}

TEST_F(PrintExport, ALandscapeGraphTurnsThePageAndOneTooLargeIsRefused) {
    draw_sample("landscape");
    const std::string file = path("landscape.pdf");
    {
        QPrinter printer(QPrinter::HighResolution);
        pdf_printer(printer, file);
        ASSERT_EQ(gui::print_graph_on(printer, tell), 0);
        EXPECT_EQ(printer.pageLayout().orientation(), QPageLayout::Landscape);
    }
    const QString info = tool_output("pdfinfo", {QString::fromStdString(file)});
    EXPECT_TRUE(info.contains(QRegularExpression("Page size:\\s+792 x 612 pts"))) << info.toStdString();
    EXPECT_TRUE(told.empty());

    program({"graph width = 12, height = 12"});
    QPrinter printer(QPrinter::HighResolution);
    pdf_printer(printer, path("large.pdf"));
    EXPECT_EQ(gui::print_graph_on(printer, tell), -1);
    EXPECT_EQ(told, std::vector<std::string>{"Graph Print: Graph does not fit on the page. Check printer mode."});
    EXPECT_FALSE(QFile::exists(QString::fromStdString(path("large.pdf"))));
}

TEST_F(PrintExport, AFileThatCannotBeStartedIsUnableToPrint) {
    draw_sample();
    QPrinter printer(QPrinter::HighResolution);
    pdf_printer(printer, path("no/folder/graph.pdf"));
    EXPECT_EQ(gui::print_graph_on(printer, tell), -1);
    EXPECT_EQ(told, std::vector<std::string>{"Tessaline Graph: Unable to print."});
}

TEST_F(ExportTest, GraphPrintInBatchModeWritesGraphPdfWithoutAPrinterAndCancelShowsTheGraph) {
    if (!QPrinterInfo::defaultPrinter().isNull()) GTEST_SKIP() << "a default printer is set up here";
    gui::QtGraphWindow batch_window{false};
    host.graph_window = &batch_window;
    draw_sample("width = 5, height = 4");
    fe.take();
    ASSERT_EQ(type("graph print"), 0);
    EXPECT_EQ(fe.take(), "");
    EXPECT_GT(QFileInfo(scratch.filePath("graph.pdf")).size(), 1000);

    gui::QtGraphWindow qt_window{true};
    host.graph_window = &qt_window;
    ASSERT_EQ(type("graph end"), 0);
    draw_sample("width = 5, height = 4");
    QString proposed;
    qt_window.choose_printer = [&](QPrinter& p) {
        proposed = p.outputFileName();
        EXPECT_FALSE(qt_window.frame()->isVisible());
        return false;
    };
    ASSERT_EQ(type("graph print"), 0);
    EXPECT_EQ(proposed, scratch.filePath("graph.pdf"));
    EXPECT_TRUE(qt_window.frame()->isVisible());
    ASSERT_EQ(type("graph end"), 0);
    host.graph_window = &window;
}

}  // namespace
}  // namespace tl::test
