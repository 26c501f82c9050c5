// A module that tells how it understood its command line; the tests of ArgParser start it, since on Windows a parser
// reads the command line of its process and nothing else. The variable PROBE asks for a variant.

#include "brvUtils/startup/ArgParser.h"

#include "brvUtils/core/Errors.h"

#include <cstdlib>
#include <iostream>

namespace {

std::ostream& mark(std::ostream& out)
{
    return out << "message ";
}

} // namespace

int main(int argc, char** argv)
{
    const char* const asked = std::getenv("PROBE");
    const std::string variant = asked != nullptr ? asked : "";
    const std::string definitions = "n:int:5:Count, at least: one;s:string::Name;d:dir:out:Folder;pos:guiPos::Position;ignored:int:1:tail";
    int count = 5;
    std::string name;
    std::string folder = "out";
    bool placed = false;
    int x = 0;
    int y = 0;

    brvUtils::ArgParser parser = variant == "short" ? brvUtils::ArgParser(argc, argv, definitions)
                                                    : brvUtils::ArgParser(argc, argv, "probe", definitions);
    parser.addIntHandler("n", count);
    parser.addStringHandler("s", name);
    if (variant != "unhandled") {
        parser.addDirHandler("d", folder);
    }
    parser.addGUIPositionHandler("pos", placed, x, y);

    bool good = false;
    try {
        if (variant == "copy") {
            good = brvUtils::ArgParser(parser).parse();
        } else {
            good = parser.parse();
        }
        if (variant == "twice") {
            good = parser.parse();
        }
        if (variant == "second") {
            brvUtils::ArgParser(argc, argv, "second", "").parse();
        }
    } catch (const brvUtils::SystemRessourcesError& error) {
        std::cout << "refused " << error.what() << '\n';
    } catch (const brvUtils::ProgrammingError& error) {
        std::cout << "mistake " << error.what() << '\n';
    }
    std::cout << "good " << good << "\nn " << count << "\ns " << name << "\nd " << folder << "\npos " << placed << ' ' << x << ' ' << y
              << "\nv " << parser.getVerbose() << "\np " << parser.getProcessName() << "\nc " << parser.getConfigName() << "\ncfg "
              << parser.getConfigFile() << "\nu " << parser.getProcessor() << "\nrt " << parser.isRealTime() << "\nhp "
              << parser.isHighPriority() << "\nfbs " << brvUtils::ArgParser::isFbs() << '\n';
    for (const std::string& rest : parser.getRemainingArgs()) {
        std::cout << "rest " << rest << '\n';
    }
    parser.printErrorMessage(std::cout, variant == "unmarked" ? nullptr : mark);
    return 0;
}
