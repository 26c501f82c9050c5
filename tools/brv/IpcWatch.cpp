#include "Ipc.h"

#include "ObjectCells.h"

#include <fmt/format.h>

#include <csignal>

namespace brvTool {

namespace {

volatile bool interrupted = false;

/// While it lives Ctrl-C ends the watching and not the program in its midst.
class Interruptible
{
public:
    Interruptible()
    {
        interrupted = false;
        before_ = std::signal(SIGINT, [](int) { interrupted = true; });
    }
    ~Interruptible() { std::signal(SIGINT, before_); }
    Interruptible(const Interruptible&) = delete;
    Interruptible& operator=(const Interruptible&) = delete;

private:
    void (*before_)(int);
};

Cell ageCell(const ObjectActivity::Seen& seen, double watched)
{
    return seen.age ? Cell(*seen.age, fmt::format("{:.1f} s", *seen.age)) : Cell(nullptr, fmt::format("over {:.1f} s", watched));
}

} // namespace

int watchObjects(Output& output, const ObjectChoice& choice, double interval, int count)
{
    const Interruptible guard;
    ObjectActivity activity([&](const brvUtils::NamedObject& object) { return choice.takes(object); });
    const auto start = ObjectActivity::Clock::now();
    for (int refresh = 0; !interrupted && (count == 0 || refresh < count); ++refresh) {
        activity.startPeriod();
        const auto begin = ObjectActivity::Clock::now();
        activity.lookFor(interval, &interrupted);
        if (interrupted) {
            break;
        }
        requireSight(activity.latest());
        const double seconds = std::chrono::duration<double>(ObjectActivity::Clock::now() - begin).count();
        const double watched = std::chrono::duration<double>(ObjectActivity::Clock::now() - start).count();
        Table table{"objects", {{"name", "NAME"}, {"kind", "KIND"}, {"state", "STATE"}, {"size", "BYTES"}, {"holders", "HELD BY"}, {"age", "LAST CHANGE"}, {"rate", "SEEN/S"}}, {},
            choice.none(), ""};
        for (const brvUtils::NamedObject& object : activity.latest().objects) {
            const ObjectActivity::Seen seen = activity.of(object);
            const double rate = static_cast<double>(seen.changes) / seconds;
            table.rows.push_back({shownName(object.name), kindOf(object), stateCell(object), sizeCell(object), holdersCell(object),
                ageCell(seen, watched), Cell(rate, fmt::format("{:.1f}", rate))});
        }
        if (!output.json() && output.terminalWidth() != 0) {
            output.write("\x1b[H\x1b[J"); // in place of the last one; nothing that would have to be taken back in the end
        }
        output.showNext({table});
    }
    return good;
}

} // namespace brvTool
