#include "Findings.h"

#include "Command.h"

#include <fmt/format.h>

#include <algorithm>

namespace brvTool {

namespace {

std::size_t count(const Findings& findings, Verdict verdict)
{
    return static_cast<std::size_t>(
        std::count_if(findings.begin(), findings.end(), [&](const Finding& each) { return each.verdict == verdict; }));
}

Cell cellOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::ok: return {"ok", "", Tone::good};
    case Verdict::warning: return {"warning", "", Tone::warning};
    default: return {"problem", "", Tone::bad};
    }
}

} // namespace

Answer answerOf(const Findings& findings)
{
    Table table{"findings", {{"state", "STATE"}, {"subject", "SUBJECT"}, {"text", "WHAT"}}, {}, "", ""};
    std::string remedies;
    Json document = Json::array();
    std::vector<std::vector<Cell>> rows;
    for (const Finding& each : findings) {
        const Cell state = cellOf(each.verdict);
        document.push_back({{"state", state.value}, {"subject", each.subject}, {"text", each.text}, {"where", orNull(each.where)}, {"remedy", orNull(each.remedy)}});
        rows.push_back({state, each.subject, each.text + (each.where.empty() ? "" : " (" + each.where + ")")});
        if (!each.remedy.empty()) {
            rows.push_back({"", "", "-> " + each.remedy});
        }
    }
    const std::size_t problems = count(findings, Verdict::problem), warnings = count(findings, Verdict::warning);
    table.rows = std::move(rows);
    table.key.clear(); // people see remedies in rows of their own
    return {std::move(table), Lines{"findings", "", std::move(document)},
        Fields{"", {{{"problems", "Problems"}, problems}, {{"warnings", "Warnings"}, warnings}}, ""}};
}

int exitCodeOf(const Findings& findings)
{
    return count(findings, Verdict::problem) > 0 ? somethingIsWrong : good;
}

} // namespace brvTool
