#pragma once

#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "brvUtils/core/ValuePtr.h"
#include "brvUtils/export.h"
#include "brvUtils/startup/ArgHandlers.h"

namespace brvUtils {

/// The command line of a module: the flags that all modules share, and its own.
///
/// Each flag is declared twice: described in the definitions string, and bound to a variable by a handler. A definitions
/// string is made of entries "flag:type:default:help text;", in which nothing is trimmed; what follows the last ";" is
/// ignored. The types are "bool", "string", "file", "dir", "int", "float", "inet", "guiPos" and "guiSize".
///
/// Construct, add a handler for every described flag, `parse`, and read the variables; after a false, show the error
/// message. A mistake of the program is a `ProgrammingError`; a mistake on the command line is text in the error message.
/// One thread at a time. The bound variables belong to the program and must outlive the parser and its copies; the flags
/// of a copied parser stay bound to the variables of the original, the built-in ones included.
class BRVUTILS_API ArgParser
{
public:
    /// With the built-in flags: `v` verbose, `p` process name (by default `processName`), `c` configuration name, `cfg`
    /// configuration file, `rt` real time, `hp` high priority, `u` processor, `fbs` frequency based scheduler, and `h`,
    /// `H` and `?` for help. On Windows the command line is the process's own, in its 8-bit code page, and `argc` and
    /// `argv` serve only when the system cannot split that; elsewhere they are the command line. Throws
    /// `ProgrammingError` for a bad entry of `definitions`, for a flag described twice, and, since `fbs` is common to
    /// all parsers, for a second such parser after `fbs` was set.
    ArgParser(int argc, const char* const* argv, const std::string& processName, const std::string& definitions);

    /// Without any built-in flag, not even help.
    ArgParser(int argc, const char* const* argv, const std::string& definitions);

    /// The same flags, faults and values, bound to the variables of the original.
    ArgParser(const ArgParser&);
    /// The same; its own flags are forgotten.
    ArgParser& operator=(const ArgParser&);
    ~ArgParser();

    /// Binds a "bool" flag, without its hyphen, to a variable. The described default must be what the variable holds. Throws
    /// `ProgrammingError` if it is not, though the variable then holds the described default, and for a flag that is not
    /// described, is described with another type, or has a handler already.
    void addBooleanHandler(const std::string& flag, bool& variable);
    /// The same for "string".
    void addStringHandler(const std::string& flag, std::string& variable);
    /// The same for "file".
    void addFileHandler(const std::string& flag, std::string& variable);
    /// The same for "dir".
    void addDirHandler(const std::string& flag, std::string& variable);
    /// The same for "int".
    void addIntHandler(const std::string& flag, int& variable);
    /// The same for "float".
    void addFloatHandler(const std::string& flag, float& variable);
    /// The same for "inet"; has no default.
    void addInetHandler(const std::string& flag, unsigned int& networkOrderAddress);
    /// The same for "guiPos"; has no default.
    void addGUIPositionHandler(const std::string& flag, bool& given, int& x, int& y);
    /// The same for "guiSize"; has no default.
    void addGUISizeHandler(const std::string& flag, bool& given, int& width, int& height);

    /// Reads the command line into the bound variables. A flag takes the next argument as its value unless that is a
    /// flag with a handler itself. Afterwards sets the process's priority if asked to; a refusal of the system adds a
    /// line to the error message and fails nothing. False after any fault, with all faults and the usage in the error
    /// message, which only ever grows. Throws `SystemRessourcesError` when the process cannot be bound to the processor.
    bool parse();

    /// The faults of all parses so far, a line each, and the usage after those of each. Empty when there were none.
    const std::string& getErrorMessage() const;

    /// Writes the lines of the error message that are not empty, each after `prefix` was applied to the stream if it is
    /// not null.
    void printErrorMessage(std::ostream& out, std::ostream& (*prefix)(std::ostream&) = nullptr) const;

    /// What the built-in flag `v` holds: the described default until `parse`; false where the parser has none.
    bool getVerbose() const;
    /// The same for `p`; empty where the parser has none.
    const std::string& getProcessName() const;
    /// The same for `c`.
    const std::string& getConfigName() const;
    /// The same for `cfg`.
    const std::string& getConfigFile() const;

    /// What `parse` found that is neither a known flag nor its value, in order, unknown flags included.
    const std::vector<std::string>& getRemainingArgs() const;

    /// Number of the processor asked for, or -1.
    const int& getProcessor() const;

    /// Whether high priority was asked for, also when the system refused it.
    bool isHighPriority() const;
    /// The same for real time.
    bool isRealTime() const;

    /// Whether the frequency based scheduler was asked for, from any parser of the process.
    static bool isFbs();

private:
    using HandlerPtr = ValuePtr<privateArgParser::Handler>;

    struct Description
    {
        std::string type;
        std::string defaultValue;
        std::string help;
    };

    void takeArguments(int argc, const char* const* argv);
    void setArgsDefs(const std::string& definitions);
    bool isFlag(const char* text) const;
    void insert(std::pair<std::string, HandlerPtr> entry);
    void appendUsage();
    void applyPriority();

    std::map<std::string, HandlerPtr> handlers_;
    std::vector<std::string> arguments_;
    std::vector<std::string> remainingArguments_;
    std::map<std::string, Description> descriptions_;
    bool verbose_ = false;
    std::string processName_;
    std::string configName_;
    std::string errorMessage_;
    std::string configFile_;
    bool realTime_ = false;
    bool highPriority_ = false;
    int processor_ = -1;

    static bool fbs_;
};

} // namespace brvUtils
