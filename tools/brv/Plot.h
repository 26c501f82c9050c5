#pragma once

#include "Answer.h"

#include <string>
#include <vector>

namespace brvTool {

/// What is drawn: for each of the columns of characters the range of each series there.
struct Plot
{
    /// Of the values whose abscissa lies in one place of the drawing.
    struct Range
    {
        double x = 0.0; ///< The middle of the place.
        double least = 0.0;
        double most = 0.0;
    };
    struct Series
    {
        std::string name;
        std::vector<double> values; ///< As long as `x`, NaN where there is none.
    };

    std::string over; ///< What the abscissa is.
    std::vector<double> x;
    std::vector<Series> series;

    /// Places without a value are left out.
    std::vector<Range> ranges(const Series& one, int places) const;
};

/// The plot in characters, that many wide and 20 high, with its axes.
std::string drawText(const Plot& plot, int width);

/// Draws the plot by gnuplot into a file ".svg" or ".png". \throw Fault when that is not possible; it says why.
void drawFile(const Plot& plot, const std::string& file);

} // namespace brvTool
