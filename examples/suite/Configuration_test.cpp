// What the programs do with their configuration, as a user sees it.
#include "Modules_test.h"
#include "testing/TemporaryFolder.h"

#include <Utilities/System.h>

#include <algorithm>

namespace fs = std::filesystem;

namespace {

/// A copy of the tree that lies beside the programs, to be changed.
class ConfiguredModules : public Modules
{
protected:
    ConfiguredModules() { fs::copy(programFolder() / "suite", folder_.path(), fs::copy_options::recursive); }

    std::string tree() const { return folder_.file(); }
    Variables inTree() const { return {{"STUDIO_PATH", tree()}}; }

    void change(const std::string& file, const std::string& from, const std::string& to)
    {
        std::string text = folder_.read(file);
        const std::size_t place = text.find(from);
        ASSERT_NE(place, std::string::npos) << file;
        folder_.write(file, text.replace(place, from.size(), to));
    }

    /// The start of what a vehicle tells of itself: the configuration with its cycle, and the name of the cycle.
    void expectDrive(const Arguments& arguments, const Variables& variables, const std::string& configuration, const std::string& cycle)
    {
        ChildProcess vehicle = start("vehicle", arguments, variables);
        EXPECT_THAT(lineWith(vehicle, "vehicle: configuration "), HasSubstr(configuration));
        EXPECT_THAT(lineWith(vehicle, " x real time"), StartsWith("vehicle: " + cycle));
    }

    void expectFault(const std::string& module, const Arguments& arguments, const std::string& text)
    {
        ChildProcess process = start(module, arguments, inTree());
        EXPECT_EQ(process.wait(deadline), failure) << text;
        const std::string& said = process.errorOutput();
        EXPECT_THAT(said, StartsWith(module + ": "));
        EXPECT_THAT(said, HasSubstr(text));
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    }

    brvTesting::TemporaryFolder folder_{"a stüdio"};
};

} // namespace

TEST_F(ConfiguredModules, withoutAWordTakeTheTreeBesideThem)
{
    expectDrive({}, {}, "configuration DEFAULT_1.6_Urban, cycle ", "ECE-15 (195 s");
    expectDrive({"-c", "ExtraUrban"}, {}, "configuration ExtraUrban, cycle ", "EUDC (400 s");
}

TEST_F(ConfiguredModules, shareWhatTheOtherIsToldByItsOwn)
{
    ChildProcess vehicle = start("vehicle", {"-c", "ExtraUrban", "-seconds", "0"}, inTree());
    lineWith(vehicle, "vehicle: EUDC");
    ChildProcess display = start("display", {"-c", "ExtraUrban"}, inTree());
    lineWith(display, "display: the vehicle drives EUDC (400 s)");
}

TEST_F(ConfiguredModules, takeTheFirstFolderOfTheKeywordThatHoldsTheCycle)
{
    // A name and a folder with blanks; the second folder of the search path holds the cycle, until the first does.
    fs::copy(folder_.path() / "config/ExtraUrban", folder_.path() / "config/My Town", fs::copy_options::recursive);
    change("configurations.cfg", "ExtraUrban =", "My Town = ${STUDIO_PATH}/config/My Town\nExtraUrban =");
    change("config/My Town/datafile.cfg", "config/ExtraUrban", "config/My Town");
    change("config/My Town/Process.xfg", "eudc.txt", "ece15.txt");
    expectDrive({"-c", "My Town"}, inTree(), "configuration My Town, cycle " + tree() + "/data/cycles/ece15.txt", "ECE-15");

    std::string cycle = folder_.read("data/cycles/ece15.txt");
    folder_.write("config/My Town/data/cycles/ece15.txt", cycle.replace(cycle.find("ECE-15"), 6, "TOWN"));
    expectDrive({"-c", "My Town"}, inTree(), tree() + "/config/My Town/data/cycles/ece15.txt", "TOWN");
}

TEST_F(ConfiguredModules, takeAnotherListWithTheTreeThatItLiesIn)
{
    // Only the list file is named; not by its own name, since letters outside ASCII may not reach a command line.
    const Variables place = {{"TREE", tree()}};
    const std::string cycle = "config/ExtraUrban/data/cycles/eudc.txt";
    const Arguments list = {"-cfg", "${TREE}/configurations.cfg", "-c", "ExtraUrban"};
    ChildProcess vehicle = start("vehicle", list, place);
    const std::string line = lineWith(vehicle, "vehicle: configuration ExtraUrban");
    EXPECT_THAT(line, HasSubstr(folder_.path().filename().u8string()));
    EXPECT_THAT(line, HasSubstr(cycle));

    change("configurations.cfg", "DEFAULT_1.6_Urban", "Another");
    change("configurations.cfg", "ExtraUrban =", "DEFAULT_1.6 =");
    expectDrive({"-cfg", "${TREE}/configurations.cfg"}, place, "configuration DEFAULT_1.6, cycle ", "EUDC");
}

TEST_F(ConfiguredModules, faultsOfAConfigurationAreOneLine)
{
    const std::string list = " (list file " + tree() + "/configurations.cfg)";
    expectFault("vehicle", {"-c", "Nowhere"}, "Invalid configuration: Nowhere" + list);
    expectFault("display", {"-c", "Nowhere"}, "Invalid configuration: Nowhere" + list);
    expectFault("display", {"-cfg", "no/such list"}, "No configurations.cfg file ! (list file no/such list)");

    fs::remove(folder_.path() / "data/cycles/ece15.txt");
    expectFault("vehicle", {}, "ece15.txt is in none of the folders of \"data/cycles\"; -explain data/cycles tells which these are");
    change("config/Urban/Process.xfg", "cycle =", "circle =");
    expectFault("vehicle", {}, "/config/Urban/Process.xfg has no \"cycle\" in the section \"vehicle\"");
    folder_.write("configurations.cfg", "[Common]\nUrban = ${STUDIO_PATH}/config/Urban\n");
    fs::remove(folder_.path() / "config/Urban/datafile.cfg");
    expectFault("vehicle", {}, "Unable to find a valid configuration in configurations.cfg !" + list);
    folder_.write("configurations.cfg", "");
    expectFault("vehicle", {}, "No configuration in configurations.cfg !" + list);
}

TEST_F(ConfiguredModules, putTheSegmentWhereTheConfigurationSays)
{
    const std::string segment = "Vehicle_1_" + Utilities::System::GetEffectiveUserName();
    folder_.write("config/ExtraUrban/shm.cfg", "[" + segment + "]\nType = VMIC\nBaseAddress = 0x1000\nDeviceId = none\n");
    for (const char* module : {"vehicle", "display"}) {
        ChildProcess process = start(module, {"-c", "ExtraUrban"}, inTree());
        EXPECT_EQ(process.wait(deadline), failure) << "there is no such card";
        EXPECT_THAT(process.errorOutput(), HasSubstr("Shared memory \"" + segment + "\" of "));
    }
}
