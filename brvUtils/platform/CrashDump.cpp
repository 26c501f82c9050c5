#include "brvUtils/platform/CrashDump.h"

#include "brvUtils/os/CrashFilter.h"
#include "brvUtils/os/CrashReport.h"
#include "brvUtils/os/DumpFile.h"
#include "brvUtils/os/ProcessLife.h"
#include "brvUtils/platform/internal/CrashPlace.h"

// Nothing that a filter calls here takes from the heap, which may be damaged or locked.
namespace brvUtils {
namespace {

constexpr char version[] = BRV_BUILD_VERSION;
constexpr char inHouseDomain[] = BRV_DUMP_DOMAIN;
constexpr char inHouseShare[] = BRV_DUMP_SHARE;

bool isDefined(const char* variable)
{
    char text[1];
    return os::crashVariable(variable, text, sizeof text);
}

/// False, and nothing is added, when the variable is not defined.
template <std::size_t capacity>
bool addVariable(const char* variable, CrashText<capacity>& text)
{
    char value[capacity + 1];
    const bool found = os::crashVariable(variable, value, sizeof value);
    text.add(value);
    return found;
}

bool levelIs(const char* wanted)
{
    CrashText<7> level;
    return addVariable("STUDIO_PROCESS_DUMP_LEVEL", level) && level == wanted;
}

os::DumpContents contents()
{
    return levelIs("FULL") ? os::DumpContents::full : os::DumpContents::normal;
}

void addRoot(CrashText<4095>& root)
{
    if (addVariable("STUDIO_DUMP_DIR", root)) {
        return;
    }
    const char* const* variable = os::crashTemporaryVariables;
    while (*variable != nullptr && !addVariable(*variable, root)) {
        ++variable;
    }
    root.add(*variable != nullptr ? "" : os::crashTemporaryFolder).add(os::crashPathSeparator).add("STUDIO_Dumps");
}

/// A second dump for the makers, without a word.
void copyInHouse(const CrashFacts& facts, _EXCEPTION_POINTERS* exception)
{
    CrashText<255> domain;
    if (inHouseDomain[0] == '\0' || inHouseShare[0] == '\0' || !addVariable("USERDOMAIN", domain)
        || !(domain == inHouseDomain) || !os::crashPathExists(inHouseShare)) {
        return;
    }
    CrashPlace place;
    findCrashPlace(inHouseShare, facts, place);
    if (place.fits()) {
        os::makeCrashFolder(place.folder.get());
        os::writeDumpFile(place.path.get(), contents(), exception);
    }
}

void reportSuccess(const CrashPlace& place)
{
    CrashText<8191> text;
    if (isDefined("STUDIO_DUMP_NO_MSG")) {
        os::writeCrashLine(text.add("Crash Dump generated here: ").add(place.path.get()).add('\n').get());
        return;
    }
    text.add("The software encountered a problem and need to close.\r\n\r\nA file named : \r\n"); // grammar kept for readers of old reports
    text.add(place.file.get()).add("\r\n\r\nhas been generated at the following location:\r\n").add(place.folder.get());
    text.add("\r\n\r\nand may help us to solve your problem.\r\n\r\nPlease, attach this file with your bug report.");
    os::showCrashReport(text.get(), place.folder.get());
}

void reportFailure(const CrashPlace& place)
{
    CrashText<8191> text;
    text.add("The dump file named : \"").add(place.path.get()).add("\" could not be created for an unknown reason.\n\n\n");
    os::writeCrashLine(text.get());
}

void dump(const CrashFacts& facts, _EXCEPTION_POINTERS* exception)
{
    CrashText<4095> root;
    CrashPlace place;
    addRoot(root);
    findCrashPlace(root.get(), facts, place);
    const bool fits = place.fits();
    if (fits) {
        os::makeCrashFolder(place.folder.get());
    }
    copyInHouse(facts, exception);
    if (levelIs("NONE")) {
        return;
    }
    fits && os::writeDumpFile(place.path.get(), contents(), exception) ? reportSuccess(place) : reportFailure(place);
}

long crashFilter(_EXCEPTION_POINTERS* exception)
{
    char module[256];
    if (!os::crashModuleName(module, sizeof module)) {
        std::strcpy(module, "unknown");
    }
    if (!isDefined("STUDIO_DISABLE_DUMP")) {
        CrashText<255> machine;
        CrashText<255> user;
        machine.add(addVariable("COMPUTERNAME", machine) ? "" : "localhost");
        user.add(addVariable("USERNAME", user) ? "" : "unknown");
        dump({module, os::crashTime(), os::currentProcessId(), machine.get(), user.get(), version, os::crashPathSeparator}, exception);
    }
    os::endCrashedProcess(0);
}

} // namespace
} // namespace brvUtils

void RegisterDump()
{
    RegisterDumpCallback(brvUtils::crashFilter);
}

bool RegisterDumpCallback(long (*filter)(_EXCEPTION_POINTERS*))
{
    brvUtils::os::prepareCrashClock();
    brvUtils::os::prepareThreadForCrash();
    return brvUtils::os::setCrashFilter(filter) != nullptr;
}

bool GenerateDump(const std::string& file, _EXCEPTION_POINTERS* exception)
{
    return brvUtils::os::writeDumpFile(file.c_str(), brvUtils::contents(), exception);
}
