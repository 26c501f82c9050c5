#pragma once

#include "Answer.h"
#include "Output.h"

#include <brvUtils/ipc/NamedObjects.h>

namespace brvTool {

/// How named objects are shown.
/// @{
const char* kindOf(const brvUtils::NamedObject& object);
const char* roleOf(const brvUtils::NamedObject& object);
Cell stateCell(const brvUtils::NamedObject& object);
Cell sizeCell(const brvUtils::NamedObject& object);
Cell holdersCell(const brvUtils::NamedObject& object);
std::string userText(const brvUtils::ObjectUser& user);
Json userJson(const brvUtils::ObjectUser& user);
/// UTF-8, as this program speaks.
std::string shownName(const std::string& name);
/// The way back: the bytes by which the system knows it.
std::string systemName(const std::string& shown);
/// @}

/// \throw Fault with the reason when the objects cannot be seen; nobody having any is none.
void requireSight(const brvUtils::NamedObjects& objects);

} // namespace brvTool
