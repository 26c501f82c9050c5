#include "brvUtils/startup/ArgHandlers.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/core/ValuePtr.h"

#include <gmock/gmock.h>

#include <cstring>

namespace brvUtils::privateArgParser {
namespace {

/// The text of the CommandLineError that the value causes; empty if it is taken.
std::string fault(Handler& handler, const std::string& value)
{
    try {
        handler.process(value, false);
    } catch (const CommandLineError& error) {
        return error.what();
    }
    return "";
}

std::string dotted(unsigned int address)
{
    unsigned char bytes[4];
    std::memcpy(bytes, &address, sizeof bytes);
    std::string text;
    for (const unsigned char byte : bytes) {
        text += (text.empty() ? "" : ".") + std::to_string(byte);
    }
    return text;
}

TEST(BooleanHandler, TakesItsWordsInAnyCaseAndNothingAsTrue)
{
    bool value = false;
    BooleanHandler handler("v", value);
    for (const char* word : { "", "true", "On", "TRUE" }) {
        value = false;
        EXPECT_EQ(fault(handler, word), "");
        EXPECT_TRUE(value) << word;
    }
    for (const char* word : { "False", "oFF" }) {
        value = true;
        EXPECT_EQ(fault(handler, word), "");
        EXPECT_FALSE(value) << word;
    }
    EXPECT_EQ(fault(handler, "maybe"), "Flag '-v' requires an extra argument like \"True\" or \"OFF\", \"maybe\" was provided.");
}

TEST(NumberHandlers, TakeANumberAndNothingBehindIt)
{
    int number = 0;
    IntHandler integer("n", number);
    EXPECT_EQ(fault(integer, " -12 "), "");
    EXPECT_EQ(number, -12);
    EXPECT_EQ(fault(integer, "1.5"), "Cannot read the argument for flag '-n', \"1.5\" should be an integer, but it is not so.");
    EXPECT_EQ(fault(integer, "99999999999"), "Flag '-n' requires an integer argument, \"99999999999\" was provided.");

    float real = 0;
    FloatHandler decimal("r", real);
    EXPECT_EQ(fault(decimal, "1.5e2"), "");
    EXPECT_EQ(real, 150.0F);
    EXPECT_EQ(fault(decimal, "x"), "Flag '-r' requires a float argument, \"x\" was provided.");
    EXPECT_EQ(fault(decimal, "1.5x"), "Cannot read the argument for flag '-r', \"1.5x\" should be a float, but it is not so.");
}

TEST(GUIHandlers, ReadTwoIntegersAroundTheSeparator)
{
    bool given = false;
    int first = 0;
    int second = 0;
    GUIPosHandler position("g", given, first, second);
    for (const char* value : { "100+200", "+100+200" }) {
        given = false;
        first = second = 0;
        EXPECT_EQ(fault(position, value), "");
        EXPECT_TRUE(given && first == 100 && second == 200) << value;
    }
    EXPECT_EQ(fault(position, "-5+-6"), "");
    EXPECT_TRUE(first == -5 && second == -6);

    GUISizeHandler size("g", given, first, second);
    EXPECT_EQ(fault(size, "800x600"), "");
    EXPECT_TRUE(given && first == 800 && second == 600);
    EXPECT_EQ(fault(size, "800x600x400"), "Cannot read the argument for flag '-g', \"800x600x400\" should be a float, but it is not so.");
    EXPECT_TRUE(given) << "only the other fault takes it back";
    for (const char* value : { "abc", "", "800x", "800+600" }) {
        EXPECT_EQ(fault(size, value), "Flag '-g requires a intxint argument, \"" + std::string(value) + "\" was provided.");
        EXPECT_FALSE(given);
    }
}

TEST(InetHandler, TakesAddressesAndHostNames)
{
    unsigned int address = 7;
    InetHandler handler("a", address);
    handler.process("", true);
    EXPECT_EQ(address, 7U) << "an empty default leaves the variable alone";
    EXPECT_THROW(handler.process("10.0.0.1", true), ProgrammingError);

    EXPECT_EQ(fault(handler, "10.20.30.40"), "");
    EXPECT_EQ(dotted(address), "10.20.30.40");
    EXPECT_EQ(fault(handler, "localhost"), "");
    EXPECT_EQ(dotted(address).substr(0, 4), "127.");
    const std::string nobody(64, 'x'); // longer than any part of a name, so that nobody is asked for it
    EXPECT_EQ(fault(handler, nobody),
        "Cannot read the argument for flag '-a', \"" + nobody + "\" should be a valid IP adress or a known computer name, but it is not so.");
    EXPECT_EQ(dotted(address).substr(0, 4), "127.") << "a fault leaves the variable alone";
}

TEST(Handler, StaysBoundToItsVariablesWhenCloned)
{
    int number = 0;
    std::string text;
    const ValuePtr<Handler> integer(new IntHandler("n", number));
    const ValuePtr<Handler> file(new FileHandler("f", text));
    const ValuePtr<Handler> integerCopy = integer;
    const ValuePtr<Handler> fileCopy = file;
    EXPECT_NE(integer.get(), integerCopy.get());
    integerCopy->process("4", false);
    fileCopy->process("in.txt", false);
    EXPECT_EQ(number, 4);
    EXPECT_EQ(text, "in.txt");
    EXPECT_EQ(fileCopy->getType(), "file");
    EXPECT_EQ(fileCopy->getFlag(), "f");
}

} // namespace
} // namespace brvUtils::privateArgParser
