#include "Ipc.h"

#include "ObjectCells.h"

#include <brvUtils/startup/InstanceKey.h>

#include <memory>

namespace brvTool {

namespace {

using brvUtils::NamedObject;
using brvUtils::NamedObjects;

/// By its name, with or without the instance, or by a part that no other name has; locks step back behind what they guard.
const NamedObject* find(const NamedObjects& objects, const ObjectChoice& choice, const std::string& name)
{
    const NamedObject* found[2] = {}; // others, locks
    int matches[2] = {};
    for (const NamedObject& object : objects.objects) {
        const std::string shown = shownName(object.name);
        if (shown == name || shown == choice.instance + name) {
            return &object;
        }
        if (choice.takes(object) && shown.find(name) != std::string::npos) {
            const bool isLock = !object.segment.empty();
            found[isLock] = &object;
            ++matches[isLock];
        }
    }
    const bool onlyLocks = matches[false] == 0;
    if (matches[onlyLocks] > 1) {
        throw Fault("\"" + name + "\" is part of " + std::to_string(matches[onlyLocks]) + " names; brv ipc list shows them");
    }
    return found[onlyLocks];
}

} // namespace

bool ObjectChoice::takes(const NamedObject& object) const
{
    // Where all programs have their objects in one place, what neither rule nor instance names is somebody else's.
    const bool ours = brvUtils::takersAreKnown() || object.role != NamedObject::Role::other || !instance.empty();
    return all || (ours && brvUtils::belongsToInstance(object, systemName(instance)));
}

std::string ObjectChoice::none() const
{
    const std::string whose = all ? "" : instance.empty() ? " of the suite" : " of the instance \"" + instance + "\"";
    return "nobody has a named object" + whose + " open here";
}

void addObjectChoice(CLI::App& command, ObjectChoice& choice)
{
    choice.instance = shownName(brvUtils::getInstanceKey());
    command.add_option("--instance", choice.instance, "Objects of that instance of the suite; by default that of STUDIO_INSTANCE")->type_name("NAME");
    command.add_flag("--all", choice.all, "Objects of all instances; on Windows of all programs of the session");
}

int listObjects(Output& output, const ObjectChoice& choice, double sampleSeconds)
{
    ObjectActivity activity([&](const NamedObject& object) { return choice.takes(object); });
    if (sampleSeconds > 0) {
        activity.lookFor(sampleSeconds);
    } else {
        activity.look();
    }
    requireSight(activity.latest());
    Table table{"objects", {{"name", "NAME"}, {"kind", "KIND"}, {"role", "ROLE"}, {"state", "STATE"}, {"size", "BYTES"}, {"holders", "HELD BY"}, {"changed", "CHANGED"}}, {},
        choice.none(), ""};
    for (const NamedObject& object : activity.latest().objects) {
        const bool changed = activity.of(object).changes != 0;
        const std::string seconds = Cell(sampleSeconds).shown() + " s";
        table.rows.push_back({shownName(object.name), kindOf(object), roleOf(object), stateCell(object), sizeCell(object), holdersCell(object),
            sampleSeconds > 0 ? Cell(changed, (changed ? "within " : "not for ") + seconds) : Cell(nullptr)});
    }
    const NamedObjects& seen = activity.latest();
    output.show({table, Fields{"", {{{"place", "Place"}, seen.place}, {{"sample", "Looked for, s"}, sampleSeconds},
                                       {{"left_over", "Left by killed processes"}, seen.leftOver}}, ""}});
    return good;
}

int showObject(Output& output, const ObjectChoice& choice, const std::string& name)
{
    const NamedObjects objects = brvUtils::lookAtNamedObjects(true);
    requireSight(objects);
    const NamedObject* const object = find(objects, choice, name);
    if (object == nullptr) {
        throw Fault("there is no object \"" + name + "\"; brv ipc list shows those that live");
    }
    Fields fields{"", {{{"name", "Name"}, shownName(object->name)}, {{"kind", "Kind"}, kindOf(*object)}, {{"role", "Role"}, roleOf(*object)},
                          {{"state", "State"}, stateCell(*object)}, {{"size", "Bytes"}, sizeCell(*object)}, {{"holders", "Held by"}, holdersCell(*object)}}, ""};
    Table locks{"locks", {{"name", "NAME"}, {"part", "PART"}, {"state", "STATE"}, {"holders", "HELD BY"}}, {}, "it has no locks here", "Locks"};
    if (!object->segment.empty()) {
        fields.values.push_back({{"segment", "Segment"}, shownName(object->segment)});
    }
    if (object->kind != NamedObject::Kind::segment) {
        output.show({fields});
        return good;
    }
    const brvUtils::SegmentGlance content = brvUtils::glanceAtSegment(object->name);
    if (object->role == NamedObject::Role::segment) {
        fields.values.push_back({{"layout_version", "Layout version"}, content.seen ? Cell(content.firstTwoBytes) : Cell(nullptr)});
    }
    for (const NamedObject& lock : objects.objects) {
        if (lock.kind == NamedObject::Kind::semaphore && lock.segment == object->name) {
            const bool isPart = lock.role == NamedObject::Role::partLock;
            locks.rows.push_back({shownName(lock.name), isPart ? Cell(lock.part, lock.part == -2 ? "version record" : "") : Cell(nullptr), stateCell(lock), holdersCell(lock)});
        }
    }
    output.show({fields, locks});
    return good;
}

void addIpc(Commands& commands)
{
    struct Options
    {
        ObjectChoice choice;
        double sample = 0.2, interval = 0.5;
        int count = 0;
        std::string name;
        bool yes = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App& group = commands.addGroup({"ipc", "Shows the named objects through which modules meet", {"brv ipc list", "brv ipc watch --count 10"},
        "Looking takes no lock that a module could wait for, and keeps nothing alive."});
    CLI::App& list = commands.add(group, {"list", "Shows what lives, in which state, and who has it open", {"brv ipc list", "brv ipc list --sample 1 --json"},
        "Objects carry no times: whether one has changed is found out by looking at it for a while. A semaphore that is\ntaken and freed between two looks shows no change."},
        [options](Output& output) { return listObjects(output, options->choice, options->sample); });
    list.add_option("--sample", options->sample, "Seconds of looking for changes; 0 for none")->check(CLI::Range(0.0, 3600.0))->capture_default_str();
    CLI::App& show = commands.add(group, {"show", "Shows all of one object, of a segment its locks too", {"brv ipc show Vehicle_1_me"}},
        [options](Output& output) { return showObject(output, options->choice, options->name); });
    show.add_option("NAME", options->name, "Its name, with or without the instance, or a part of it that no other has")->required()->type_name("OBJECT");
    CLI::App& watch = commands.add(group, {"watch", "Shows again and again how objects change", {"brv ipc watch", "brv ipc watch --count 3 --json"},
        "Ctrl-C ends it. Changes are those that looking every few milliseconds sees, of the bytes of segments once per\nrefresh; with --json each refresh is a line."},
        [options](Output& output) { return watchObjects(output, options->choice, options->interval, options->count); });
    watch.add_option("--interval", options->interval, "Seconds between refreshes")->check(CLI::Range(0.05, 3600.0))->capture_default_str();
    watch.add_option("--count", options->count, "Refreshes after which it ends; 0 for none")->check(CLI::NonNegativeNumber)->capture_default_str();
    CLI::App& repair = commands.add(group, {"repair", "Frees locks whose last taker has ended", {"brv ipc repair", "brv ipc repair --yes"},
        "Does what the next module that waits for such a lock would do; safe beside running modules. What the lock guards may\nbe half written until it is written again. Semaphores that modules made for themselves stay as they are."},
        [options](Output& output) { return repairLocks(output, options->choice, options->yes); });
    repair.add_flag("--yes,-y", options->yes, "Does not ask before");
    for (CLI::App* const command : {&list, &show, &watch, &repair}) {
        addObjectChoice(*command, options->choice);
    }
    commands.completes("OBJECT", [] {
        std::vector<std::string> names;
        for (const NamedObject& object : brvUtils::lookAtNamedObjects(false).objects) {
            names.push_back(shownName(object.name));
        }
        return names;
    });
}

} // namespace brvTool
