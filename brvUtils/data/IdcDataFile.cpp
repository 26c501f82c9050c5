#include "brvUtils/data/IdcDataFile.h"

#include "brvUtils/data/internal/IdcBlocks.h"
#include "brvUtils/data/internal/IdcListener.h"
#include "brvUtils/data/internal/IdcRecords.h"

namespace {

constexpr std::size_t egoColumns = 9;
constexpr std::uint64_t bytesBetweenReports = 4 * 1024 * 1024;

} // namespace

bool IdcDataFile::load(std::string const& path, std::vector<std::string> const& wantedColumns)
{
    if (wantedColumns.size() < egoColumns) {
        return false;
    }
    clear();
    objectNumbers.clear();
    objectCount = 0;
    Listener listener(*this, wantedColumns);
    brvUtils::os::InputFile file;
    if (file.open(path) != brvUtils::os::error::none) {
        return false;
    }
    using Found = brvUtils::IdcBlocks::Found;
    brvUtils::IdcBlocks blocks(file);
    brvUtils::IdcEgo ego;
    std::vector<brvUtils::IdcObject> objects;
    bool goOn = true;
    std::uint64_t nextReport = bytesBetweenReports;
    for (Found found; goOn && (found = blocks.next()) != Found::end;) {
        if (found == Found::block && blocks.type() == brvUtils::idcMeasurementListType && readIdcEgo(blocks, ego)) {
            listener.onMeasurements(ego);
        } else if (found == Found::block && blocks.type() == brvUtils::idcObjectListType && readIdcObjects(blocks, objects)) {
            listener.onObjects(objects);
        }
        if (blocks.done() >= nextReport) {
            goOn = report(blocks.done(), file.size());
            nextReport = blocks.done() + bytesBetweenReports;
        }
    }
    listener.finish();
    return goOn && report(file.size(), file.size());
}
