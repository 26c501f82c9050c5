#pragma once

#include <string>

/// \file
/// Lines that mend what is wrong, as this computer's shell takes them, or as they stand in a file.

namespace brvTool {

/// Makes an empty file.
std::string makeFile(const std::string& path);
/// Makes a file of one line.
std::string writeLine(const std::string& line, const std::string& path);
/// Makes a folder with those above it.
std::string makeFolder(const std::string& path);
/// Defines a variable. \param value what to put in, such as FOLDER.
std::string defineVariable(const std::string& name, const std::string& value);
/// An entry to put into, or change in, a section of a file.
std::string editEntry(const std::string& file, const std::string& section, const std::string& name, const std::string& value);

} // namespace brvTool
