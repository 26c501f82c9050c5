#pragma once

#include <string>

#include "brvUtils/export.h"

/// What converts the value of one command-line flag and stores it in variables of the program, which must outlive the
/// handler and its clones. The parser makes and owns them; a module adds flags through the parser and need not name them.
namespace brvUtils::privateArgParser {

/// What all of them have in common.
class BRVUTILS_API Handler
{
public:
    /// `flag` is the flag's text without its hyphen.
    explicit Handler(const std::string& flag) : flag_(flag) {}
    virtual ~Handler();

    /// A new handler of the same class, bound to the same variables; the caller owns it.
    virtual Handler* clone() const = 0;

    /// Name of the type that the flag must be described with.
    virtual std::string getType() const = 0;

    /// Converts `value` and stores it. Throws `CommandLineError` for a value that does not fit. `checkDefault` is true
    /// for the described default when the handler is added: it must then be what the variables hold already, or be empty
    /// for the kinds that have none; otherwise `ProgrammingError`.
    virtual void process(const std::string& value, bool checkDefault) = 0;

    /// The flag's text without its hyphen.
    const std::string& getFlag() const { return flag_; }

protected:
    /// For clones, which are bound to the same variables.
    Handler(const Handler&) = default;

private:
    std::string flag_;
};

/// "bool": true, on or nothing; false or off. In whatever case.
class BRVUTILS_API BooleanHandler : public Handler
{
public:
    /// \param flag without its hyphen. \param variable where the value goes; not owned.
    BooleanHandler(const std::string& flag, bool& variable) : Handler(flag), variable_(variable) {}
    Handler* clone() const override;
    std::string getType() const override;
    void process(const std::string& value, bool checkDefault) override;

private:
    bool& variable_;
};

/// "string": any text; on the command line not the empty one.
class BRVUTILS_API StringHandler : public Handler
{
public:
    /// \param flag without its hyphen. \param variable where the value goes; not owned.
    StringHandler(const std::string& flag, std::string& variable) : Handler(flag), variable_(variable) {}
    Handler* clone() const override;
    std::string getType() const override;
    void process(const std::string& value, bool checkDefault) override;

private:
    std::string& variable_;
};

/// "file": a string. Nobody looks whether the file exists.
class BRVUTILS_API FileHandler : public StringHandler
{
public:
    /// As that of StringHandler.
    using StringHandler::StringHandler;
    Handler* clone() const override;
    std::string getType() const override;
};

/// "dir": a string. Nobody looks whether the folder exists.
class BRVUTILS_API DirHandler : public StringHandler
{
public:
    /// As that of StringHandler.
    using StringHandler::StringHandler;
    Handler* clone() const override;
    std::string getType() const override;
};

/// "int": a decimal number, blanks around it allowed. After a bad value the variable holds what could be read.
class BRVUTILS_API IntHandler : public Handler
{
public:
    /// \param flag without its hyphen. \param variable where the value goes; not owned.
    IntHandler(const std::string& flag, int& variable) : Handler(flag), variable_(variable) {}
    Handler* clone() const override;
    std::string getType() const override;
    void process(const std::string& value, bool checkDefault) override;

private:
    int& variable_;
};

/// "float": a number, blanks around it allowed. After a bad value the variable holds what could be read.
class BRVUTILS_API FloatHandler : public Handler
{
public:
    /// \param flag without its hyphen. \param variable where the value goes; not owned.
    FloatHandler(const std::string& flag, float& variable) : Handler(flag), variable_(variable) {}
    Handler* clone() const override;
    std::string getType() const override;
    void process(const std::string& value, bool checkDefault) override;

private:
    float& variable_;
};

/// "inet": an IPv4 address or the name of a host, stored as address in network byte order. Looking up a name may block
/// for seconds. Has no default.
class BRVUTILS_API InetHandler : public Handler
{
public:
    /// \param flag without its hyphen. \param variable where the address goes; not owned.
    InetHandler(const std::string& flag, unsigned int& variable) : Handler(flag), variable_(variable) {}
    Handler* clone() const override;
    std::string getType() const override;
    void process(const std::string& value, bool checkDefault) override;

private:
    unsigned int& variable_;
};

/// Two integers with a separator between them, and whether they were given. Has no default.
class BRVUTILS_API GUIXYHandler : public Handler
{
public:
    /// \param flag without its hyphen. \param separator between both numbers. \param given set to true by a value.
    /// \param first, second where the numbers go. The variables are not owned.
    GUIXYHandler(const std::string& flag, char separator, bool& given, int& first, int& second)
        : Handler(flag), separator_(separator), given_(given), first_(first), second_(second)
    {
    }
    void process(const std::string& value, bool checkDefault) override;

private:
    char separator_;
    bool& given_;
    int& first_;
    int& second_;
};

/// "guiPos": a position such as 100+200 or +100+200.
class BRVUTILS_API GUIPosHandler : public GUIXYHandler
{
public:
    /// \param flag without its hyphen. \param given set to true by a value. \param x, y where it goes. The variables are not owned.
    GUIPosHandler(const std::string& flag, bool& given, int& x, int& y) : GUIXYHandler(flag, '+', given, x, y) {}
    Handler* clone() const override;
    std::string getType() const override;
};

/// "guiSize": a size such as 800x600.
class BRVUTILS_API GUISizeHandler : public GUIXYHandler
{
public:
    /// \param flag without its hyphen. \param given set to true by a value. \param width, height where it goes. The variables
    ///        are not owned.
    GUISizeHandler(const std::string& flag, bool& given, int& width, int& height) : GUIXYHandler(flag, 'x', given, width, height) {}
    Handler* clone() const override;
    std::string getType() const override;
};

/// "help": fails with an empty text, which makes the parser show the usage.
class BRVUTILS_API HelpHandler : public Handler
{
public:
    /// As that of Handler.
    using Handler::Handler;
    Handler* clone() const override;
    std::string getType() const override;
    void process(const std::string& value, bool checkDefault) override;
};

/// "proc": number of the processor, from 0 to 31, that the process and the calling thread are bound to; -1 binds
/// nothing. What was done is told on the standard output. Throws `SystemRessourcesError` when the system refuses; for a
/// processor that the computer lacks it waits three seconds before it throws `CommandLineError`.
class BRVUTILS_API ProcessorHandler : public Handler
{
public:
    /// \param flag without its hyphen. \param processor where the value goes; not owned.
    ProcessorHandler(const std::string& flag, int& processor) : Handler(flag), number_(flag, processor), processor_(processor) {}
    Handler* clone() const override;
    std::string getType() const override;
    void process(const std::string& value, bool checkDefault) override;

private:
    IntHandler number_;
    int& processor_;
};

} // namespace brvUtils::privateArgParser
