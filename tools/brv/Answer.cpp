#include "Answer.h"

#include <fmt/format.h>

namespace brvTool {

namespace {

std::string textOf(const Json& value)
{
    switch (value.type()) {
    case Json::value_t::null: return "-";
    case Json::value_t::string: return value.get<std::string>();
    case Json::value_t::boolean: return value.get<bool>() ? "yes" : "no";
    case Json::value_t::number_float: return fmt::format("{:.6g}", value.get<double>());
    case Json::value_t::array: {
        std::string text;
        for (const Json& each : value) {
            text += (text.empty() ? "" : ", ") + textOf(each);
        }
        return text.empty() ? "-" : text;
    }
    default: return value.dump(-1, ' ', false, Json::error_handler_t::replace);
    }
}

void put(Json& document, const Fields& fields)
{
    Json& object = fields.key.empty() ? document : document[fields.key];
    for (const auto& [label, cell] : fields.values) {
        object[label.key] = cell.value;
    }
}

void put(Json& document, const Table& table)
{
    if (table.key.empty()) {
        return;
    }
    Json rows = Json::array();
    for (const std::vector<Cell>& row : table.rows) {
        Json object = Json::object();
        for (std::size_t i = 0; i < row.size(); ++i) {
            object[table.columns[i].key] = row[i].value;
        }
        rows.push_back(std::move(object));
    }
    document[table.key] = std::move(rows);
}

void put(Json& document, const Lines& lines)
{
    if (!lines.key.empty()) {
        document[lines.key] = lines.value.is_null() ? Json(lines.text) : lines.value;
    }
}

} // namespace

Json orNull(const std::string& text)
{
    return text.empty() ? Json() : Json(text);
}

std::string Cell::shown() const
{
    return text.empty() ? textOf(value) : text;
}

Json toJson(const Answer& answer)
{
    Json document = Json::object();
    for (const auto& block : answer) {
        std::visit([&](const auto& each) { put(document, each); }, block);
    }
    return document;
}

} // namespace brvTool
