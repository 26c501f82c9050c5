/// Writes the vehicle's drive, and what the sensor has of the traffic, to a text table, 50 rows in each second.
#include "Configuration.h"
#include "Heartbeat.h"
#include "Module.h"
#include "Recording.h"
#include "SensorShm.h"
#include "VehicleFollower.h"
#include "VehicleShm.h"
#include "VehicleWait.h"

#include <brvUtils/platform/CrashDump.h>
#include <brvUtils/startup/GenericPath.h>

#include <cstdio>
#include <exception>
#include <string>

namespace {

using namespace suite;

struct Options
{
    float wait = 10.0f;
    float silence = 10.0f;
    std::string file;
};

const char* const flags = "wait:float:10:Seconds to wait for the vehicle, 0 to 100000;"
                          "silence:float:10:Seconds without news after which the vehicle counts as lost, 0.1 to 100000;"
                          "file:file::The recording, by default what the configuration says. One that is there is gone on with;";

constexpr double period = 0.02; // seconds between two rows

std::filesystem::path recordingPlace(const Options& options)
{
    nameRun(); // which the configuration may refer to
    const std::string text = options.file.empty() ? moduleSetting("recorder", "file") : utf8(options.file);
    const auto file = std::filesystem::u8path(brvUtils::resolveGenericPath(text));
    std::error_code none; // then the file cannot be opened either
    std::filesystem::create_directories(file.parent_path(), none);
    return file;
}

/// Tells when the file cannot be written any more, and when it can again.
class Complaints
{
public:
    Complaints(const std::string& me, const std::string& file)
        : me_(me)
        , file_(file)
    {
    }

    void look(const CsvWriter& writer)
    {
        if (writer.fault().empty() != fault_.empty()) {
            if (fault_.empty()) {
                complain(me_, file_ + " cannot be written: " + writer.fault() + "; the rows wait");
            } else {
                complain(me_, file_ + " can be written again, " + std::to_string(writer.lost()) + " rows are lost");
            }
        }
        fault_ = writer.fault();
    }

private:
    const std::string me_;
    const std::string file_;
    std::string fault_; ///< When it was last looked at.
};

int run(const std::string& me, const Options& options)
{
    const std::filesystem::path place = recordingPlace(options);
    const std::string file = place.u8string();
    VehicleShm shm;
    Heartbeat heartbeat(me, period);
    if (!waitForVehicle(shm, heartbeat, options.wait, me)) {
        tell(std::cout, me, StopRequest::received() ? "stopped" : "no vehicle came");
        return StopRequest::received() ? 0 : 1;
    }
    Recording recording(place, period);
    CsvWriter& writer = recording.writer();
    if (recording.before() < 0) {
        tell(std::cout, me, "writes " + file);
    } else {
        tell(std::cout, me, "goes on in " + file + " behind row " + std::to_string(recording.before()));
    }
    if (writer.removed() > 0) {
        tell(std::cout, me, "removed " + std::to_string(writer.removed()) + " bytes of a row that was cut");
    }

    Complaints complaints(me, file);
    complaints.look(writer);
    SensorShm sensor;
    SensorView view;
    const Ending ending = followVehicle(shm, heartbeat, static_cast<double>(options.silence), [&](const VehicleState& state) {
        sensor.look(view);
        recording.add(state, view, clockNow());
        complaints.look(recording.writer());
    });
    writer.write();
    const std::size_t missing = writer.waiting() + writer.lost();
    tell(std::cout, me, std::string(textOf(ending)) + ", " + std::to_string(recording.rows() - static_cast<std::int64_t>(missing)) + " rows written");
    if (missing > 0) {
        complain(me, std::to_string(missing) + " rows could not be written to " + file);
    }
    return ending == Ending::vehicleSilent || missing > 0 ? 1 : 0;
}

} // namespace

int main(int argc, char** argv)
{
    RegisterDump();
    StopRequest::listen();
    std::string me = "recorder";
    try {
        Options options;
        brvUtils::ArgParser arguments(argc, argv, me, flags);
        arguments.addFloatHandler("wait", options.wait);
        arguments.addFloatHandler("silence", options.silence);
        arguments.addFileHandler("file", options.file);
        if (!readCommandLine(arguments, me) || !withinLimits(me, "wait", options.wait, 0.0f, 100000.0f)
            || !withinLimits(me, "silence", options.silence, 0.1f, 100000.0f)) {
            return 1;
        }
        selectConfiguration(arguments);
        return run(me, options);
    } catch (const std::exception& fault) {
        complain(me, fault.what());
        return 1;
    }
}
