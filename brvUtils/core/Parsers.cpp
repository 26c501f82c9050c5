#include "brvUtils/core/Parsers.h"

#include <algorithm>
#include <boost/fusion/include/std_pair.hpp>
#include <boost/optional.hpp>
#include <boost/spirit/include/qi.hpp>
#include <cmath>
#include <limits>
#include <utility>

namespace brvUtils::Parsers {
namespace {

namespace qi = boost::spirit::qi;
namespace ascii = boost::spirit::ascii; // whose classes take bytes beyond ASCII, in contrast to those of the C library

using Iterator = std::string::const_iterator;
using Range = std::pair<unsigned int, boost::optional<unsigned int>>;

/// Reads as far as the grammar allows, over blanks, and returns where that is; `complete` tells whether it is an end.
Iterator readRanges(Iterator first, Iterator last, std::vector<Range>& ranges, bool& complete)
{
    qi::rule<Iterator, Range(), ascii::space_type> range = qi::uint_ >> -('-' > qi::uint_);
    qi::rule<Iterator, std::vector<Range>(), ascii::space_type> list = -(range >> *(';' > range));
    Iterator position = first;
    try {
        complete = qi::phrase_parse(position, last, list, ascii::space, ranges);
    } catch (const qi::expectation_failure<Iterator>& fault) {
        position = fault.first;
        qi::parse(position, last, *ascii::space);
        complete = false;
    }
    return position;
}

constexpr double firstBeyondFloat = 0x1.FFFFFFp127; // what is smaller has the largest float as its nearest

float nearestFloat(double number)
{
    constexpr double largest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(number, -largest, largest));
}

} // namespace

std::vector<float> parseFloats(const std::string& text)
{
    std::vector<double> numbers; // read in double precision, so that each float is the nearest
    qi::phrase_parse(text.begin(), text.end(), *qi::double_, ascii::space | ',' | ';', numbers);
    // Nor is a word a number that begins with "inf" or "nan", which were read as such.
    const auto end = std::find_if_not(numbers.begin(), numbers.end(), [](double number) { return std::abs(number) < firstBeyondFloat; });
    std::vector<float> floats;
    std::transform(numbers.begin(), end, std::back_inserter(floats), nearestFloat);
    return floats;
}

std::set<unsigned int> parsePrintPages(const std::string& text)
{
    std::vector<Range> ranges;
    bool complete = false;
    const Iterator end = readRanges(text.begin(), text.end(), ranges, complete);
    if (!complete || end != text.end()) {
        throw ParseError(std::string(text.begin(), end));
    }
    std::set<unsigned int> pages;
    for (const Range& range : ranges) {
        const auto [first, last] = std::minmax({ range.first, range.second.value_or(range.first) });
        for (unsigned int page = first; page != last; ++page) {
            pages.insert(pages.end(), page);
        }
        pages.insert(last);
    }
    return pages;
}

} // namespace brvUtils::Parsers
