#include "Command.h"
namespace brvTool { void addConfig(Commands&){} void addVersion(Commands&){} void addData(Commands&){} void addDoctor(Commands&){} }
