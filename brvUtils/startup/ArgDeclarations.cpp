// How flags are declared: the definitions string, and the handlers that a program adds.

#include "brvUtils/startup/ArgParser.h"

#include "brvUtils/core/Errors.h"

namespace brvUtils {

using namespace privateArgParser;

void ArgParser::setArgsDefs(const std::string& definitions)
{
    std::size_t start = 0;
    for (std::size_t end; (end = definitions.find(';', start)) != std::string::npos; start = end + 1) {
        const std::string entry = definitions.substr(start, end - start);
        const std::size_t afterFlag = entry.find(':');
        const std::size_t afterType = afterFlag == std::string::npos ? afterFlag : entry.find(':', afterFlag + 1);
        const std::size_t afterDefault = afterType == std::string::npos ? afterType : entry.find(':', afterType + 1);
        if (afterFlag == 0 || afterDefault == std::string::npos) {
            throw ProgrammingError("ArgParser: Argument description \"" + entry + "\" is invalid");
        }
        const std::string flag = entry.substr(0, afterFlag);
        const Description description { entry.substr(afterFlag + 1, afterType - afterFlag - 1),
            entry.substr(afterType + 1, afterDefault - afterType - 1), entry.substr(afterDefault + 1) };
        if (!descriptions_.emplace(flag, description).second) {
            throw ProgrammingError("ArgParser: Trying to set description of argument '-" + flag + "' which is already described");
        }
    }
}

void ArgParser::insert(std::pair<std::string, HandlerPtr> entry)
{
    const std::string flag = entry.first;
    const std::string trouble = "ArgParser: Trying to add handling of flag '-" + flag + "' which is ";
    if (entry.second->getType() != "help") {
        const auto description = descriptions_.find(flag);
        if (description == descriptions_.end()) {
            throw ProgrammingError(trouble + "not described");
        }
        if (description->second.type != entry.second->getType()) {
            throw ProgrammingError(trouble + "described as a different type");
        }
        try {
            entry.second->process(description->second.defaultValue, true);
        } catch (const CommandLineError& error) {
            throw ProgrammingError(error.what());
        }
    }
    if (!handlers_.insert(std::move(entry)).second) {
        throw ProgrammingError(trouble + "already handled");
    }
}

void ArgParser::addBooleanHandler(const std::string& flag, bool& variable)
{
    insert({ flag, HandlerPtr(new BooleanHandler(flag, variable)) });
}

void ArgParser::addStringHandler(const std::string& flag, std::string& variable)
{
    insert({ flag, HandlerPtr(new StringHandler(flag, variable)) });
}

void ArgParser::addFileHandler(const std::string& flag, std::string& variable)
{
    insert({ flag, HandlerPtr(new FileHandler(flag, variable)) });
}

void ArgParser::addDirHandler(const std::string& flag, std::string& variable)
{
    insert({ flag, HandlerPtr(new DirHandler(flag, variable)) });
}

void ArgParser::addIntHandler(const std::string& flag, int& variable)
{
    insert({ flag, HandlerPtr(new IntHandler(flag, variable)) });
}

void ArgParser::addFloatHandler(const std::string& flag, float& variable)
{
    insert({ flag, HandlerPtr(new FloatHandler(flag, variable)) });
}

void ArgParser::addInetHandler(const std::string& flag, unsigned int& networkOrderAddress)
{
    insert({ flag, HandlerPtr(new InetHandler(flag, networkOrderAddress)) });
}

void ArgParser::addGUIPositionHandler(const std::string& flag, bool& given, int& x, int& y)
{
    insert({ flag, HandlerPtr(new GUIPosHandler(flag, given, x, y)) });
}

void ArgParser::addGUISizeHandler(const std::string& flag, bool& given, int& width, int& height)
{
    insert({ flag, HandlerPtr(new GUISizeHandler(flag, given, width, height)) });
}

} // namespace brvUtils
