#include "ConfigDoctor.h"
#include "FileLines.h"
#include "Remedies.h"

#include <Utilities/ConfigFile.h>

#include <algorithm>
#include <map>

// What is wrong with a "shm.cfg", which says what segments live on a reflective-memory card.

namespace brvTool {

namespace {

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](char each) { return each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each; });
    return text;
}

class SegmentExamination
{
public:
    SegmentExamination(Findings& findings, const std::string& subject, const std::string& file) : findings_(findings), subject_(subject), lines_(file), config_(file) {}

    void run()
    {
        for (const std::string& section : lines_.sections()) {
            config_.setSection(section);
            std::string type;
            if (!config_.readString("Type", type)) {
                add(Verdict::warning, section, "", "has no Type, and the segment lives in memory", "Type", "VMIC");
            } else if (type == "VMIC") {
                examineCard(section);
            } else if (lowerCase(type).find("vmic") != std::string::npos) {
                add(Verdict::problem, section, "Type", "Type = " + type + " means memory: case and length count", "Type", "VMIC");
            }
        }
    }

private:
    void add(Verdict verdict, const std::string& section, const std::string& entry, const std::string& text, const std::string& name, const std::string& value)
    {
        findings_.push_back({verdict, subject_, "segment [" + section + "]: " + text, editEntry(lines_.path(), section, name, value), lines_.placeOf(section, entry)});
    }

    void examineCard(const std::string& section)
    {
        std::string text;
        unsigned int address = 0;
        if (!config_.readString("BaseAddress", text)) {
            add(Verdict::problem, section, "Type", "there is no BaseAddress", "BaseAddress", "0x1000");
        } else if (!config_.readHexaUnsignedInt("BaseAddress", address)) {
            add(Verdict::problem, section, "BaseAddress", "BaseAddress " + text + " is no hexadecimal number of 32 bits", "BaseAddress", "0x1000");
        } else if (const auto [other, isNew] = addresses_.emplace(address, section); !isNew) {
            add(Verdict::problem, section, "BaseAddress", "its BaseAddress is that of [" + other->second + "], too", "BaseAddress", "ANOTHER");
        }
        int interrupt = 1;
        if (config_.readString("Interrupt", text) && (!config_.readInt("Interrupt", interrupt) || interrupt < 0 || interrupt > 4)) {
            add(Verdict::problem, section, "Interrupt", "Interrupt " + text + " is no number from 0 to 4", "Interrupt", "0");
        } else if (interrupt != 0) {
            if (const auto [other, isNew] = interrupts_.emplace(interrupt, section); !isNew) {
                add(Verdict::warning, section, "Interrupt", "its Interrupt " + std::to_string(interrupt) + " is that of [" + other->second + "], too: no process can open both", "Interrupt", "0");
            }
        }
    }

    Findings& findings_;
    const std::string& subject_;
    FileLines lines_;
    Utilities::ConfigFile config_;
    std::map<unsigned int, std::string> addresses_;
    std::map<int, std::string> interrupts_;
};

} // namespace

void examineSegments(Findings& findings, const std::string& subject, const std::string& file)
{
    SegmentExamination(findings, subject, file).run();
}

} // namespace brvTool
