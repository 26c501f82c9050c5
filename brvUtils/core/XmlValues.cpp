#include "brvUtils/core/XmlValues.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <fast_float/fast_float.h>
#include <limits>
#include <locale>
#include <rapidxml/rapidxml.hpp>
#include <sstream>

namespace brvUtils {

namespace {

/// Copied: who parses without terminators gets values that none ends.
std::string textOf(const rapidxml::xml_node<char>* node)
{
    return {node->value(), node->value_size()};
}

int leadingInteger(const std::string& text)
{
    const long long number = std::strtoll(text.c_str(), nullptr, 10);
    return static_cast<int>(std::clamp<long long>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

/// What atof reads where the decimal separator is a point.
double leadingDouble(const std::string& text)
{
    const char* const end = text.data() + text.size();
    const char* p = std::find_if_not(text.data(), end, [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); });
    const bool negative = p != end && *p == '-';
    p += negative || (p != end && *p == '+');
    double magnitude = 0.0;
    if (end - p > 2 && p[0] == '0' && (p[1] == 'x' || p[1] == 'X')) {
        if (p[2] == '.' || std::isxdigit(static_cast<unsigned char>(p[2])) != 0) { // no sign, "inf" or "nan" behind the prefix
            std::from_chars(p + 2, end, magnitude, std::chars_format::hex);
        }
    } else if (p != end && *p != '-') { // no second sign
        fast_float::from_chars(p, end, magnitude);
    }
    return negative ? -magnitude : magnitude;
}

} // namespace

void loadValue(int& out, rapidxml::xml_node<char> const* node)
{
    out = leadingInteger(textOf(node));
}

void loadValue(double& out, rapidxml::xml_node<char> const* node)
{
    out = leadingDouble(textOf(node));
}

void loadValue(bool& out, rapidxml::xml_node<char> const* node)
{
    out = leadingInteger(textOf(node)) != 0;
}

void loadValue(std::string& out, rapidxml::xml_node<char> const* node)
{
    out = textOf(node);
}

void loadValue(brv::Vector3& out, rapidxml::xml_node<char> const* node)
{
    std::istringstream stream(textOf(node));
    stream.imbue(std::locale::classic());
    out = {};
    stream >> out;
}

void addValue(rapidxml::xml_document<char>* doc, rapidxml::xml_node<char>* parent, const char* name, const char* value)
{
    parent->append_node(doc->allocate_node(rapidxml::node_element, doc->allocate_string(name), doc->allocate_string(value)));
}

void addValue(rapidxml::xml_document<char>* doc, rapidxml::xml_node<char>* parent, const char* name, double value)
{
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << value;
    addValue(doc, parent, name, stream.str().c_str());
}

void addValue(rapidxml::xml_document<char>* doc, rapidxml::xml_node<char>* parent, const char* name, bool value)
{
    addValue(doc, parent, name, value ? "1" : "0");
}

} // namespace brvUtils
