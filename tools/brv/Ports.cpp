#include "Command.h"
#include "ObjectCells.h"

#include <brvUtils/ipc/ConfigurationPortManager.h>

namespace brvTool {

void addPorts(Commands& commands)
{
    commands.add(commands.top(), {"ports", "Shows which process has which of the ports 25099 to 25300", {"brv ports", "brv ports --json"},
        "Only looks: the guard of the ports is not taken. A process that has ended keeps its ports until another one asks."},
        [](Output& output) {
            requireSight(brvUtils::lookAtNamedObjects(false)); // or it would look as if nobody had a port
            Table table{"ports", {{"port", "PORT"}, {"process", "PROCESS"}, {"program", "PROGRAM"}, {"alive", "ALIVE"}}, {}, "nobody has a port", ""};
            for (const brvUtils::PortHolder& holder : brvUtils::ConfigurationPortManager::look()) {
                table.rows.push_back({holder.port, holder.process, holder.program.empty() ? Cell(nullptr) : Cell(holder.program),
                    Cell(holder.alive, "", holder.alive ? Tone::plain : Tone::warning)});
            }
            output.show({table});
            return good;
        });
}

} // namespace brvTool
