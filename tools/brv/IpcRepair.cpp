#include "Ipc.h"

#include "ObjectCells.h"

#include <cstdio>
#include <iostream>

namespace brvTool {

namespace {

using brvUtils::NamedObject;

std::vector<NamedObject> deadLocks(const ObjectChoice& choice)
{
    const brvUtils::NamedObjects objects = brvUtils::lookAtNamedObjects(true);
    requireSight(objects);
    std::vector<NamedObject> found;
    for (const NamedObject& object : objects.objects) {
        if (object.isDeadLock() && choice.takes(object)) {
            found.push_back(object);
        }
    }
    return found;
}

bool userAgrees(std::size_t count)
{
    std::fprintf(stderr, "Free %zu of them? y/N ", count);
    std::fflush(stderr);
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes";
}

/// Where the system does not tell takers: what can be seen.
int showTaken(Output& output, const ObjectChoice& choice)
{
    const brvUtils::NamedObjects objects = brvUtils::lookAtNamedObjects(true);
    requireSight(objects);
    Table table{"taken", {{"name", "NAME"}, {"role", "ROLE"}}, {}, "no lock is taken now", "Locks that are taken now"};
    for (const NamedObject& object : objects.objects) {
        const bool isLock = object.role == NamedObject::Role::partLock || object.role == NamedObject::Role::initLock || object.role == NamedObject::Role::portGuard;
        if (isLock && object.taken && choice.takes(object)) {
            table.rows.push_back({shownName(object.name), roleOf(object)});
        }
    }
    output.show({Fields{"", {{{"takers_known", "Takers known"}, false}}, ""},
        Lines{"remedy", "This system does not tell who took a semaphore: nothing is freed. A lock that stays taken is free again when all\n"
                        "modules that have its segment open were ended.", nullptr},
        table});
    return good;
}

} // namespace

int repairLocks(Output& output, const ObjectChoice& choice, bool withoutAsking)
{
    if (!brvUtils::takersAreKnown()) {
        return showTaken(output, choice);
    }
    if (output.json() && !withoutAsking) {
        throw Fault("a program is not asked: repair --json needs --yes");
    }
    const std::vector<NamedObject> dead = deadLocks(choice);
    Table table{"locks", {{"name", "NAME"}, {"taker", "LAST TAKER"}}, {}, "nothing to repair: no lock was left taken by a process that has ended", ""};
    for (const NamedObject& lock : dead) {
        table.rows.push_back({shownName(lock.name), {userJson(lock.lastTaker), userText(lock.lastTaker)}});
    }
    if (dead.empty()) {
        output.show({table});
        return good;
    }
    if (!withoutAsking) {
        output.showNext({table});
        if (!userAgrees(dead.size())) {
            output.write("Nothing was changed.\n");
            return somethingIsWrong;
        }
    }
    table.columns.push_back({"freed", "WHAT WAS DONE"});
    for (std::size_t i = 0; i < dead.size(); ++i) {
        const bool freed = brvUtils::freeDeadLock(dead[i]).freed;
        table.rows[i].push_back({freed, freed ? "freed" : "nothing: somebody else was quicker, or it is gone"});
    }
    output.showNext({table});
    return good;
}

} // namespace brvTool
