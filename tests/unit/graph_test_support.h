// graph_test_support.h — a graph window that records what the model asks of it,
// and a fixture whose front end is a window (graphs allowed).
#pragma once

#include <string>
#include <vector>

#include "exec/commands.h"
#include "exec/graph_window.h"
#include "exec/program_store.h"
#include "exec/run_loop.h"
#include "graph/graph_state.h"
#include "test_support.h"

namespace tl::test {

class RecordingGraphWindow : public GraphWindow {
public:
    bool fail_create = false;
    int created = 0, destroyed = 0, resized = 0, repaints = 0, full_repaints = 0, maximised = 0, menu_updates = 0;
    int prints = 0, metafiles = 0, jpegs = 0;
    std::vector<int> drawn_texts;
    std::vector<std::string> messages;  // "caption: text"

    bool create() override {
        ++created;
        return !fail_create;
    }
    void destroy() override { ++destroyed; }
    void resize_to_graph() override { ++resized; }
    void repaint(bool full) override {
        ++repaints;
        if (full) ++full_repaints;
        graph.repaint_pending = false;  // painted at once
    }
    void maximise() override { ++maximised; }
    void update_menu_marks() override { ++menu_updates; }
    void draw_text_entry(int index) override { drawn_texts.push_back(index); }
    void message_box(std::string_view caption, std::string_view text) override {
        messages.push_back(std::string(caption) + ": " + std::string(text));
    }
    int print_graph() override { return ++prints, 0; }
    int export_metafile() override { return ++metafiles, 0; }
    int export_jpeg() override { return ++jpegs, 0; }
};

/// A front end that is a window, not a terminal.
class WindowFrontEnd : public RecordingFrontEnd {
public:
    bool console = false;
    bool console_mode() const override { return console; }
};

class GraphTest : public ::testing::Test {
protected:
    WindowFrontEnd fe;
    RecordingGraphWindow window;

    void SetUp() override {
        reset_interpreter_state();
        host.front_end = &fe;
        host.graph_window = &window;
        ASSERT_EQ(init_language_tables(default_sizing()), 0) << fe.output;
    }
    void TearDown() override {
        host.front_end = nullptr;
        host.graph_window = nullptr;
        reset_interpreter_state();
    }
    /// A line typed at the prompt; the output it gave is in fe.output.
    int type(const char* line) { return run_command_line(line); }
    /// Types a line and returns its output (forgotten afterwards).
    std::string output_of(const char* line) {
        fe.take();
        (void)type(line);
        return fe.take();
    }
    /// True when typing `line` fails with `message`.
    ::testing::AssertionResult fails_with(const char* line, const std::string& message) {
        fe.take();
        const int rc = type(line);
        const std::string out = fe.take();
        if (rc < 0 && out.find("ERROR - " + message + "\n") != std::string::npos)
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << line << " gave " << rc << ":\n" << out;
    }
    /// Checks and runs `text` as the loaded program.
    int run(const std::string& text) {
        EXPECT_TRUE(replace_program_text(text));
        if (int rc = check_program(); rc < 0) return rc;
        return start_program(false);
    }
    /// Lays out a plotting area by hand: `ppi` pixels per inch, the area at
    /// (left, top) of w x h pixels, and the calculated scales and offsets.
    static void set_surface(double ppi, double left, double top, double w, double h, double hscale, double vscale,
                            double hoffset, double voffset) {
        GraphSurface& f = graph.surface;
        f.ppi_x = f.ppi_y = ppi;
        f.area_left = left, f.area_top = top, f.area_width = w, f.area_height = h;
        GraphSettings& s = graph.settings;
        s.width = (w + 2 * left) / ppi;
        s.height = (h + 2 * top) / ppi;
        s.hscale_calculated = hscale, s.vscale_calculated = vscale;
        s.hoffset_calculated = hoffset, s.voffset_calculated = voffset;
        f.ppdu_x = ppi / hscale;
        f.ppdu_y = ppi / vscale;
        f.valid = true;
    }
};

}  // namespace tl::test
