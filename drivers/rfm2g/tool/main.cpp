/// Looks at the rings of the software card and interferes with them.
#include "Commands.h"
#include "Fault.h"
#include "FaultTexts.h"

#include <CLI/CLI.hpp>
#include <Utilities/Encoding.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

using namespace rfm2gCard;

const char* const programName = "rfm2g-card";
constexpr Offset mebibyte = 1024 * 1024;

/// What is wrong with the name of a ring, if anything.
std::string check(const std::string& ring)
{
    return softwareCard::isRingName(ring) ? "" : "\"" + ring + "\" is no name of a ring: letters, digits, . _ - make one";
}

/// What the command line says. Texts are UTF-8.
struct Options
{
    RingPlace place;
    std::string offset, damagedAt, size = "64";
    Offset length = 256;
    std::string fault;
    std::string faultValue, faultState;
    SegmentName segment;
    int part = 0;
    std::int16_t version = 0;

    /// One ring, or all when none is named. \throw Fault when the variable that names it does not: options were looked at.
    const RingPlace& rings() const
    {
        if (!place.ring.empty() && !softwareCard::isRingName(place.ring)) {
            throw Fault("RFM2G_RING: " + check(place.ring));
        }
        return place;
    }

    RingPlace ring() const { return {place.folder, rings().ring.empty() ? softwareCard::defaultRing : place.ring}; }
};

/// \throw Fault unless the text is one, with or without 0x in front.
Offset hexadecimal(const std::string& text)
{
    const bool marked = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const char* const end = text.data() + text.size();
    Offset value = 0;
    const auto [stop, failure] = std::from_chars(text.data() + (marked ? 2 : 0), end, value, 16);
    if (failure != std::errc() || stop != end) {
        throw Fault("\"" + text + "\" is no hexadecimal number of 32 bits");
    }
    return value;
}

/// Bytes of a card that is made.
Offset cardSize(const std::string& text)
{
    for (const Offset size : {64, 128, 256}) {
        if (text == std::to_string(size)) {
            return size * mebibyte;
        }
    }
    throw Fault("a card has 64, 128 or 256 MB, not \"" + text + "\"");
}

void addList(CLI::App& app, Options& options)
{
    CLI::App* const command = app.add_subcommand("list", "Shows the rings, who has their nodes open, and the faults that are on");
    command->footer("The events behind a process are those that it has enabled; 1 to 4 are the interrupts that users send.\n"
                    "Example: rfm2g-card list");
    command->callback([&options] { list(options.rings()); });
}

void addShow(CLI::App& app, Options& options)
{
    CLI::App* const command = app.add_subcommand("show", "Dumps memory of the ring");
    command->add_option("OFFSET", options.offset, "First byte, hexadecimal, with or without 0x")->required();
    command->add_option("LENGTH", options.length, "Bytes, decimal or with 0x hexadecimal")->capture_default_str();
    command->footer("Runs of equal rows are shown by a star. Looking takes no memory.\nExample: rfm2g-card show 0x1000 64");
    command->callback([&options] { show(options.ring(), hexadecimal(options.offset), options.length); });
}

void addFault(CLI::App& app, Options& options)
{
    CLI::App* const command = app.add_subcommand("fault", "Shows faults, and switches them on and off while programs run");
    command->add_option("NAME", options.fault, "One of those below; or \"off\", which ends all of them");
    command->add_option("VALUE", options.faultValue, "What stands behind it below; without it the fault is shown");
    command->add_option("STATE", options.faultState, "Behind the number of a node");
    command->footer("Faults:\n"
                    "  ring-open on|off         The ring check fails, writes and interrupts of all nodes are lost\n"
                    "  open-refused on|off      No card can be opened\n"
                    "  lost-writes N|off        Each Nth write is lost\n"
                    "  silent NODE [on|off]     Writes and interrupts of that node are lost\n"
                    "  silent off               The same, ended for all nodes\n"
                    "Example: rfm2g-card fault silent 1; sleep 1; rfm2g-card fault silent 1 off");
    command->callback([&options] {
        const bool known = std::find(faultNames.begin(), faultNames.end(), options.fault) != faultNames.end();
        std::vector<std::string> values;
        for (const std::string& value : {options.faultValue, options.faultState}) {
            if (!value.empty()) {
                values.push_back(value);
            }
        }
        if (options.fault == "off" && values.empty()) {
            clearFaults(options.ring());
        } else if (!options.fault.empty() && !known) {
            throw Fault("there is no fault \"" + options.fault + "\"; fault --help lists them");
        } else if (values.empty()) {
            showFaults(options.ring(), options.fault);
        } else {
            setFault(options.ring(), options.fault, values);
        }
    });
}

void addDamage(CLI::App& app, Options& options)
{
    CLI::App* const command = app.add_subcommand("damage", "Turns over the bits of a checksum; a second time mends it");
    CLI::Option* const file = command->add_option("FILE", options.segment.file, "Path of the \"shm.cfg\" that puts the segment on the card");
    CLI::Option* const section = command->add_option("SECTION", options.segment.section, "The segment's section there, <name>_<version>_<user>");
    CLI::Option* const part = command->add_option("PART", options.part, "Number of the part, 0 for the version record");
    CLI::Option* const size = command->add_option("SIZE", options.segment.size, "Bytes of the segment, as programs tell it when they open the card");
    CLI::Option* const at = command->add_option("--at", options.damagedAt, "In place of all these the word's offset, hexadecimal");
    part->check(CLI::Range(0, partCount - 1));
    file->needs(section)->needs(part)->needs(size)->excludes(at);
    command->footer("Examples: rfm2g-card damage shm.cfg Vehicle_1_me 1 106\n"
                    "          rfm2g-card damage --at 0x106e");
    command->callback([&options, file, at] {
        if (at->count() != 0) {
            damage(options.ring(), hexadecimal(options.damagedAt));
        } else if (file->count() != 0) {
            damage(options.ring(), options.segment, options.part);
        } else {
            throw Fault("damage needs FILE SECTION PART SIZE, or --at OFFSET");
        }
    });
}

void addVersion(CLI::App& app, Options& options)
{
    CLI::App* const command = app.add_subcommand("version", "Writes the version record of a composite segment");
    command->add_option("FILE", options.segment.file, "Path of the \"shm.cfg\" that puts the segment on the card")->required();
    command->add_option("SECTION", options.segment.section, "The segment's section there, <name>_<version>_<user>")->required();
    command->add_option("VERSION", options.version, "Version of the segment's layout")->required();
    command->add_option("SIZE", options.segment.size, "Bytes of the segment, as programs tell it when they open the card")
        ->required()->check(CLI::Range(Offset{2}, Offset{256} * mebibyte));
    command->add_option("--size", options.size, "MB of a ring that is made: 64, 128 or 256")->envname("RFM2G_SIZE")->capture_default_str();
    command->footer("A blank card holds version 0. Where programs look at the card at each read, they refuse a segment of another\n"
                    "version than theirs until it was written. The size includes the 2 bytes of the record. Makes the ring.\n"
                    "Example: rfm2g-card version shm.cfg Vehicle_1_me 1 106");
    command->callback([&options] { writeVersion(options.ring(), options.segment, options.version, cardSize(options.size)); });
}

void addRemove(CLI::App& app, Options& options)
{
    CLI::App* const command = app.add_subcommand("remove", "Removes a ring that nobody has open, and its memory");
    command->add_option("RING", options.place.ring, "Its name")->required()->check(check);
    command->footer("Example: rfm2g-card remove default");
    command->callback([&options] { remove(options.ring()); });
}

/// In the code page of the process, as main gets them. The parser takes the last one first.
std::vector<std::string> backwards(int argc, char** argv)
{
    using namespace Utilities::Encoding;
    std::vector<std::string> arguments;
    for (int i = argc - 1; i > 0; --i) {
        arguments.push_back(Transcode(Transcode(argv[i], Mode::Local8Bit), Mode::Utf8));
    }
    return arguments;
}

int complain(std::string text)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::fprintf(stderr, "%s: %s\n", programName, text.c_str());
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    CLI::App app("Looks at the rings of the software card and interferes with them.", programName);
    app.require_subcommand(0, 1);
    app.fallthrough();
    app.add_option("--ring", options.place.ring, "Name of the ring, by default RFM2G_RING or \"default\"; list shows all without it")->check(check);
    app.add_option("--folder", options.place.folder, "Folder of the rings, by default RFM2G_FOLDER or the user's own");
    app.footer("COMMAND --help tells more of each. Example: rfm2g-card --ring bench list");
    for (const auto add : {addList, addShow, addFault, addDamage, addVersion, addRemove}) {
        add(app, options);
    }
    try {
        options.place = {softwareCard::variable("RFM2G_FOLDER"), softwareCard::variable("RFM2G_RING")};
        app.parse(backwards(argc, argv));
        if (app.get_subcommands().empty()) {
            throw Fault("no command is given; --help lists them");
        }
        return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? 0 : complain("the output cannot be written");
    } catch (const CLI::ParseError& fault) {
        return fault.get_exit_code() == 0 ? app.exit(fault) : complain(std::string(fault.what()) + "; --help tells more");
    } catch (const std::exception& fault) {
        return complain(fault.what());
    }
}
