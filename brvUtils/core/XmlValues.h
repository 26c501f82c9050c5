#pragma once

#include "brvUtils/export.h"

#include <brv/Vector3.h>

#include <string>

namespace rapidxml {
template <class Ch>
class xml_document;
template <class Ch>
class xml_node;
} // namespace rapidxml

/// \file
/// Settings as elements of a rapidxml document, the value as their text, which is the same in any locale. A value that is
/// missing or malformed reads as 0, false or the empty text. Nodes and documents must not be null. Include rapidxml.hpp, too.

namespace brvUtils {

/// Reads what the text begins with, as atoi does: 12 of "12abc", 0 of "abc". Numbers beyond the limits of int become these.
BRVUTILS_API void loadValue(int& out, rapidxml::xml_node<char> const* node);

/// The same, as atof does: 12.0 of "12abc", infinity of "inf".
BRVUTILS_API void loadValue(double& out, rapidxml::xml_node<char> const* node);

/// Whether the text begins with an integer other than 0: "1", "-1", "2x", but not "true".
BRVUTILS_API void loadValue(bool& out, rapidxml::xml_node<char> const* node);

/// Takes the text as it is.
BRVUTILS_API void loadValue(std::string& out, rapidxml::xml_node<char> const* node);

/// Reads three numbers with blanks between; when these are not there, all are 0.
BRVUTILS_API void loadValue(brv::Vector3& out, rapidxml::xml_node<char> const* node);

/// Appends an element behind the children of `parent`. Name and value are copied to the memory of `doc`.
/// \throw std::bad_alloc, or what rapidxml's handler of errors does, when there is no memory.
BRVUTILS_API void addValue(
    rapidxml::xml_document<char>* doc, rapidxml::xml_node<char>* parent, const char* name, const char* value);

/// The same with six significant digits: "0.1", "1.23457e+06".
BRVUTILS_API void addValue(rapidxml::xml_document<char>* doc, rapidxml::xml_node<char>* parent, const char* name, double value);

/// The same with "1" or "0".
BRVUTILS_API void addValue(rapidxml::xml_document<char>* doc, rapidxml::xml_node<char>* parent, const char* name, bool value);

} // namespace brvUtils
