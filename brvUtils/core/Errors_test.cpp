#include "brvUtils/core/Errors.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace brvUtils {
namespace {

template <typename Error, typename Caught>
bool caughtAs()
{
    try {
        throw Error("text");
    } catch (const Caught& error) {
        return std::string(error.what()) == "text";
    } catch (const std::exception&) {
        return false;
    }
}

template <typename Error>
void throwFromAnotherCopy()
{
    const Error first("one");
    Error second("two");
    second = first;
    throw Error(second);
}

TEST(Errors, AreCaughtByTheirParents)
{
    EXPECT_TRUE((caughtAs<CommandLineError, ConfigurationError>()));
    EXPECT_TRUE((caughtAs<ConfigSyntaxError, ConfigurationError>()));
    EXPECT_TRUE((caughtAs<KeyError, ConfigurationError>()));
    EXPECT_TRUE((caughtAs<PrecessNotFoundError, NetworkError>()));
    EXPECT_FALSE((caughtAs<NetworkBadHostError, NetworkError>()));
    EXPECT_TRUE((caughtAs<ShmSynchroError, SynchroError>()));
    EXPECT_TRUE((caughtAs<SemaphoreSynchroError, SynchroError>()));
    EXPECT_TRUE((caughtAs<SystemRessourcesError, std::runtime_error>()));
    EXPECT_FALSE((caughtAs<ProgrammingError, std::runtime_error>()));
    EXPECT_TRUE((caughtAs<ProgrammingError, std::logic_error>()));
}

TEST(Errors, KeepTheirMessageWhenCopied)
{
    try {
        throwFromAnotherCopy<KeyError>();
    } catch (const KeyError& error) {
        EXPECT_STREQ(error.what(), "one");
    }
}

std::string assertionMessage(const std::string& text, int line)
{
    try {
        AssertAbort(text.c_str(), line);
    } catch (const ProgrammingError& error) {
        return error.what();
    }
}

TEST(AssertAbort, ThrowsWhatFailedAndWhere)
{
    EXPECT_EQ(assertionMessage("x", 12), "Assertion failed: x-12\n");
    const std::string cut = assertionMessage(std::string(400, 'y'), 12);
    EXPECT_EQ(cut, "Assertion failed: " + std::string(255 - 18, 'y'));
}

TEST(GetLastSystemError, HasATextAlsoForSuccess)
{
    errno = 0;
    EXPECT_FALSE(GetLastSystemError().empty());
}

TEST(GetLastSystemError, TellsWhyTheLastCallFailed)
{
    EXPECT_EQ(std::fopen("there-is-no-such-file", "r"), nullptr);
    std::string text = GetLastSystemError();
    text.erase(text.find_last_not_of(".\r\n") + 1);
    const int fileNotFound = 2; // on both systems
    EXPECT_EQ(text, std::system_category().message(fileNotFound).substr(0, text.size()));
    EXPECT_NE(text, "");
}

} // namespace
} // namespace brvUtils
