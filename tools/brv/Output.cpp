#include "Output.h"

#include "Table.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace brvTool {

namespace {

/// Of pictures that are no terminal's. Tables are as wide as they like there: names that go on in the next line are found by no
/// other program.
constexpr int usualWidth = 110;
constexpr int anyWidth = 1'000'000;

std::string dump(const Json& document, int indent)
{
    return document.dump(indent, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace

Output::Output(const Choices& choices)
    : output_(choices.verbose ? brvUtils::OtherOutput::errorStream : brvUtils::OtherOutput::nowhere), json_(choices.json)
{
}

int Output::width() const
{
    const int columns = terminalWidth();
    return columns > 0 ? columns : usualWidth;
}

std::string Output::textOf(const Answer& answer) const
{
    const char* const noColour = std::getenv("NO_COLOR");
    const bool terminal = terminalWidth() > 0;
    return toText(answer, {terminal ? width() : anyWidth, terminal && (noColour == nullptr || *noColour == '\0')});
}

void Output::show(const Answer& answer)
{
    write(json_ ? dump(toJson(answer), 2) : textOf(answer));
}

void Output::showNext(const Answer& answer)
{
    write(json_ ? dump(toJson(answer), -1) : textOf(answer));
}

void Output::write(const std::string& text)
{
    if (!output_.write(text)) {
        throw Fault("the output cannot be written");
    }
}

void Output::complain(const std::string& text)
{
    std::string line = text;
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::fprintf(stderr, "brv: %s\n", line.c_str());
    if (json_) {
        output_.write(dump(Json{{"error", line}}, 2));
    }
}

} // namespace brvTool
