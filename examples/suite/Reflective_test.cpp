// The modules over the nodes of the software card.
#include "Modules_test.h"
#include "testing/TemporaryFolder.h"

#include <Utilities/System.h>

#include <optional>
#include <sstream>

namespace {

class Reflective : public Modules
{
protected:
    Reflective()
    {
        namespace fs = std::filesystem;
        fs::copy(programFolder() / "suite", folder_.path(), fs::copy_options::recursive);
        fs::create_directory(folder_.path() / "rings");
        std::string segments = folder_.read(configFile);
        const std::string mark = "@USER@";
        for (std::size_t place = 0; (place = segments.find(mark, place)) != segments.npos;) {
            segments.replace(place, mark.size(), Utilities::System::GetEffectiveUserName());
        }
        folder_.write(configFile, segments);
    }

    Variables variables(const std::string& node) const
    {
        return {{"STUDIO_PATH", folder_.file()}, {"RFM2G_FOLDER", folder_.file("rings")}, {"RFM2G_NODE", node}};
    }

    void card(const Arguments& arguments)
    {
        ChildProcess process = start("rfm2g-card", arguments, variables("0"));
        EXPECT_EQ(process.wait(deadline), success) << process.errorOutput();
    }

    /// Writes the version of the vehicle's segment to the card, by what a module tells that does not find it there.
    void writeVersion()
    {
        ChildProcess trial = start("display", {"-c", "REFLECTIVE", "-wait", "0"}, variables("2"));
        std::istringstream words(lineWith(trial, "[SHM VMIC] SHM Vehicle_"));
        std::string word, name, size;
        words >> word >> word >> word >> name >> word >> size;
        EXPECT_EQ(trial.wait(deadline), failure);
        EXPECT_THAT(trial.errorOutput(), HasSubstr("Version of shm of this program = 1 is different of the version of the shm = 0"));
        card({"version", folder_.file(configFile), name, "1", size});
    }

    /// The frame in the display's next row.
    std::optional<long> nextFrame(ChildProcess& supervisor)
    {
        while (const auto line = supervisor.readLine(deadline)) {
            std::istringstream words(*line);
            std::string module;
            double wall = 0, time = 0, speed = 0, target = 0, distance = 0;
            long frame = 0;
            if (words >> module >> wall >> time >> speed >> target >> distance >> frame && module == "display:") {
                return frame;
            }
        }
        ADD_FAILURE() << "the display shows no more\n" << supervisor.errorOutput();
        return std::nullopt;
    }

    static constexpr const char* configFile = "config/REFLECTIVE/shm.cfg";

    brvTesting::TemporaryFolder folder_;
};

} // namespace

TEST_F(Reflective, displaysPictureStandsStillWhileTheVehiclesNodeIsSilent)
{
    writeVersion();
    ChildProcess supervisor = start("supervisor", {"-c", "REFLECTIVE", "-grace", "0"}, variables("3"));
    // Its beat comes from the vehicle's node by an interrupt, the state by looking.
    lineWith(supervisor, " alive ");
    std::optional<long> before = nextFrame(supervisor);
    card({"fault", "silent", "1"});
    std::optional<long> frame = nextFrame(supervisor);
    for (before = std::nullopt; frame && frame != before; frame = nextFrame(supervisor)) {
        before = frame;
    }
    card({"fault", "off"});
    while (frame && frame == before) {
        frame = nextFrame(supervisor);
    }
    EXPECT_GT(frame, before);
    supervisor.kill();
    while (supervisor.readLine(deadline)) {
    }
    EXPECT_FALSE(supervisor.outputOpen()) << "a process is left behind";
}
