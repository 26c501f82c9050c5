#include "ObjectCells.h"

#include <Utilities/Encoding.h>

namespace brvTool {

using brvUtils::NamedObject;

const char* kindOf(const NamedObject& object)
{
    return object.kind == NamedObject::Kind::semaphore ? "semaphore" : object.kind == NamedObject::Kind::event ? "event" : "segment";
}

const char* roleOf(const NamedObject& object)
{
    switch (object.role) {
    case NamedObject::Role::segment: return "composite segment";
    case NamedObject::Role::partLock: return "lock of a part";
    case NamedObject::Role::initLock: return "initialisation lock";
    case NamedObject::Role::portTable: return "table of ports";
    case NamedObject::Role::portGuard: return "guard of the ports";
    default: return "other";
    }
}

std::string userText(const brvUtils::ObjectUser& user)
{
    if (user.process == 0) {
        return "a process that is not known any more";
    }
    return (user.program.empty() ? "process" : shownName(user.program)) + " " + std::to_string(user.process);
}

Json userJson(const brvUtils::ObjectUser& user)
{
    Json json{{"process", nullptr}, {"program", nullptr}};
    if (user.process != 0) {
        json["process"] = user.process;
    }
    if (!user.program.empty()) {
        json["program"] = shownName(user.program);
    }
    return json;
}

std::string shownName(const std::string& name)
{
    using namespace Utilities::Encoding;
    return Transcode(Transcode(name, Mode::Local8Bit), Mode::Utf8);
}

std::string systemName(const std::string& shown)
{
    using namespace Utilities::Encoding;
    return Transcode(Transcode(shown, Mode::Utf8), Mode::Local8Bit);
}

Cell stateCell(const NamedObject& object)
{
    if (object.kind == NamedObject::Kind::segment) {
        return {nullptr};
    }
    if (!object.stateKnown) {
        return {nullptr, "unknown"};
    }
    if (object.kind == NamedObject::Kind::event) {
        const std::string text = object.set ? "set" : "not set";
        return {Json{{"set", object.set}, {"manual_reset", object.manualReset}}, text + (object.manualReset ? ", manual reset" : "")};
    }
    Json json{{"taken", object.taken}};
    if (!object.taken) {
        return {json, "free"};
    }
    json["taker"] = userJson(object.lastTaker);
    switch (object.taker) {
    case NamedObject::Taker::nobody:
        json["taker_is"] = "nobody";
        return {json, "taken since it was made"};
    case NamedObject::Taker::running:
        json["taker_is"] = "running";
        return {json, "taken by " + userText(object.lastTaker)};
    case NamedObject::Taker::ended:
        json["taker_is"] = "ended";
        return {json, "taken by " + userText(object.lastTaker) + ", ended", object.isDeadLock() ? Tone::bad : Tone::warning};
    default:
        json["taker_is"] = "unknown";
        return {json, "taken"};
    }
}

Cell sizeCell(const NamedObject& object)
{
    return object.kind == NamedObject::Kind::segment ? Cell(object.size) : Cell(nullptr);
}

Cell holdersCell(const NamedObject& object)
{
    Json list = Json::array();
    std::string text;
    for (const brvUtils::ObjectUser& user : object.holders) {
        list.push_back(userJson(user));
        text += (text.empty() ? "" : ", ") + userText(user);
    }
    if (!object.holdersKnown) {
        text += text.empty() ? "unknown" : " and unknown";
        return {object.holders.empty() ? Json(nullptr) : Json{{"known", list}, {"complete", false}}, text};
    }
    return {Json{{"known", list}, {"complete", true}}, text};
}

void requireSight(const brvUtils::NamedObjects& objects)
{
    if (!objects.problem.empty()) {
        throw Fault(objects.problem);
    }
}

} // namespace brvTool
