#include "Output.h"
#include "Plot.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

namespace brvTool {

namespace {

namespace fs = std::filesystem;

const std::string quiet = fs::path::preferred_separator == '\\' ? " >nul 2>nul" : " >/dev/null 2>&1";

/// A folder of its own, removed in the end.
class Folder
{
public:
    Folder()
    {
        std::random_device random;
        path = fs::temp_directory_path() / fmt::format("brv-plot-{:08x}{:08x}", random(), random());
        if (!fs::create_directory(path)) {
            throw Fault("no folder for the drawing can be made in " + path.parent_path().u8string());
        }
    }
    ~Folder()
    {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    fs::path path;
};

std::string quoted(const std::string& text)
{
    std::string inside;
    for (const char each : text) {
        inside += each == '\'' ? "''" : static_cast<unsigned char>(each) < 0x20 ? "?" : std::string(1, each);
    }
    return "'" + inside + "'";
}

void writeScript(const Plot& plot, const fs::path& folder, const std::string& terminal)
{
    std::ofstream script(folder / "plot.gp");
    script << "set encoding utf8\nset terminal " << terminal << " size 1000,600\nset output 'drawing'\nset grid\nset xlabel " << quoted(plot.over) << " noenhanced\nplot ";
    for (std::size_t i = 0; i < plot.series.size(); ++i) {
        script << (i > 0 ? ", " : "") << "'-' using 1:2 with lines title " << quoted(plot.series[i].name) << " noenhanced";
    }
    script << "\n";
    for (const Plot::Series& series : plot.series) {
        for (std::size_t i = 0; i < plot.x.size(); ++i) {
            if (std::isfinite(plot.x[i]) && std::isfinite(series.values[i])) {
                script << fmt::format("{} {}\n", plot.x[i], series.values[i]);
            }
        }
        script << "e\n";
    }
    if (!script.flush()) {
        throw Fault("the drawing cannot be written to " + folder.u8string());
    }
}

} // namespace

void drawFile(const Plot& plot, const std::string& file)
{
    const fs::path target = fs::u8path(file);
    const std::string extension = target.extension().u8string();
    if (extension != ".svg" && extension != ".png") {
        throw Fault("a drawing is a .svg or .png file, not " + file);
    }
    if (std::system(("gnuplot --version" + quiet).c_str()) != 0) {
        throw Fault("gnuplot, which draws into files, is not installed (Debian: apt-get install gnuplot-nox); without --output the drawing comes here");
    }
    const Folder folder;
    writeScript(plot, folder.path, extension == ".svg" ? "svg" : "pngcairo");
    const fs::path before = fs::current_path();
    fs::current_path(folder.path);
    const int code = std::system(("gnuplot plot.gp" + quiet).c_str());
    fs::current_path(before);
    std::error_code failure;
    if (code != 0 || !fs::copy_file(folder.path / "drawing", target, fs::copy_options::overwrite_existing, failure)) {
        throw Fault(code != 0 ? "gnuplot could not draw the plot" : file + " cannot be written");
    }
}

} // namespace brvTool
