#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

/// \file
/// What a command found out: one structure, from which the table for people and the document for programs are both made, so
/// that they never differ.

namespace brvTool {

/// Keeps the order of keys.
using Json = nlohmann::ordered_json;

/// What a terminal shows a value in.
enum class Tone { plain, good, warning, bad };

/// One value, for programs, and how people see it.
struct Cell
{
    /// \param given what a Json can be made of; null for what is not known.
    template <typename Value, typename = std::enable_if_t<std::is_constructible_v<Json, Value> && !std::is_same_v<std::decay_t<Value>, Cell>>>
    Cell(Value&& given, std::string shown = {}, Tone in = Tone::plain) : value(std::forward<Value>(given)), text(std::move(shown)), tone(in) {}

    /// The text, or else what stands for the value: "yes", "no", "-" for null, six digits of a number.
    std::string shown() const;

    Json value;
    std::string text; ///< Empty: as shown() says.
    Tone tone;
};

/// What all values of a column, or one value, are called.
struct Label
{
    std::string key; ///< In the document: words in small letters with "_" between them.
    std::string title; ///< For people.
};

/// Rows of values: an array of objects in the document.
struct Table
{
    std::string key; ///< Of the array. Empty: not in the document.
    std::vector<Label> columns;
    std::vector<std::vector<Cell>> rows; ///< Each as long as `columns`.
    std::string none; ///< The line that people see when there are no rows.
    std::string title; ///< The line above, if any.
};

/// Values one below the other: keys of the document or, with a key of their own, an object in it.
struct Fields
{
    std::string key; ///< Empty: the document itself.
    std::vector<std::pair<Label, Cell>> values;
    std::string title; ///< The line above, if any.
};

/// Lines for people, and what stands for them in the document.
struct Lines
{
    std::string key; ///< Empty: not in the document.
    std::string text; ///< With "\n" between lines.
    Json value; ///< Null: the text.
};

/// All that a command answers, from top to bottom.
using Answer = std::vector<std::variant<Fields, Table, Lines>>;

/// The text, or null for an empty one.
Json orNull(const std::string& text);

/// The answer as a document.
Json toJson(const Answer& answer);

} // namespace brvTool
