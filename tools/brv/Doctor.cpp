#include "Command.h"
#include "Findings.h"

#include <brvUtils/platform/SystemReport.h>

// The command that looks whether this computer is fit for the suite.

namespace brvTool {

void addDoctor(Commands& commands)
{
    commands.add(commands.top(), {"doctor", "Looks whether this computer is fit for the suite, and says what mends it", {"brv doctor", "brv doctor --json"},
                                     "brv config doctor looks at the configurations."},
        [](Output& output) {
            Findings findings;
            for (const brvUtils::SystemFinding& each : brvUtils::systemReport()) {
                using State = brvUtils::SystemFinding::State;
                const Verdict verdict = each.state == State::good ? Verdict::ok : each.state == State::warning ? Verdict::warning : Verdict::problem;
                findings.push_back({verdict, each.subject, each.text, each.remedy});
            }
            output.show(answerOf(findings));
            return exitCodeOf(findings);
        });
}

} // namespace brvTool
