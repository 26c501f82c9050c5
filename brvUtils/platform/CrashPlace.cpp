#include "brvUtils/platform/internal/CrashPlace.h"

namespace brvUtils {
namespace {

unsigned long part(int number)
{
    return static_cast<unsigned long>(number);
}

} // namespace

void findCrashPlace(const char* root, const CrashFacts& facts, CrashPlace& place)
{
    CrashText<63> version;
    version.add(facts.version).makeName();
    place.folder.add(root).add(facts.separator).add(version.get()).add(facts.separator).add(facts.module);
    place.file.add("Velora engine").add('_').add(facts.module);
    place.file.add('_').add(part(facts.time.tm_mday), 2).add('_').add(part(facts.time.tm_mon + 1), 2);
    place.file.add('_').add(part(facts.time.tm_year + 1900), 4);
    place.file.add('-').add(part(facts.time.tm_hour), 2).add('_').add(part(facts.time.tm_min), 2).add('_').add(part(facts.time.tm_sec), 2);
    place.file.add('_').add(facts.process).add('_').add(facts.machine).add('_').add(facts.user).add('_').add(version.get());
    place.file.add(".dmp").makeName();
    place.path.add(place.folder.get()).add(facts.separator).add(place.file.get());
}

} // namespace brvUtils
