#include "brvUtils/core/Parsers.h"

#include <algorithm>
#include <boost/fusion/include/std_pair.hpp>
#include <boost/optional.hpp>
#include <boost/spirit/include/qi.hpp>
#include <utility>

namespace brvUtils::Parsers {
namespace {

namespace qi = boost::spirit::qi;

using Iterator = std::string::const_iterator;
using Range = std::pair<unsigned int, boost::optional<unsigned int>>;

/// Reads as far as the grammar allows, over blanks, and returns where that is; `complete` tells whether it is an end.
Iterator readRanges(Iterator first, Iterator last, std::vector<Range>& ranges, bool& complete)
{
    qi::rule<Iterator, Range(), qi::space_type> range = qi::uint_ >> -('-' > qi::uint_);
    qi::rule<Iterator, std::vector<Range>(), qi::space_type> list = -(range >> *(';' > range));
    Iterator position = first;
    try {
        complete = qi::phrase_parse(position, last, list, qi::space, ranges);
    } catch (const qi::expectation_failure<Iterator>& fault) {
        position = std::find_if_not(fault.first, last, [](char c) { return boost::spirit::char_encoding::standard::isspace(c); });
        complete = false;
    }
    return position;
}

} // namespace

std::vector<float> parseFloats(const std::string& text)
{
    std::vector<double> numbers; // read in double precision, so that each float is the nearest
    qi::phrase_parse(text.begin(), text.end(), *qi::double_, qi::space | ',' | ';', numbers);
    std::vector<float> floats;
    std::transform(numbers.begin(), numbers.end(), std::back_inserter(floats), [](double number) { return static_cast<float>(number); });
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
