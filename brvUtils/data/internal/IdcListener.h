#pragma once

#include "brvUtils/data/IdcDataFile.h"
#include "brvUtils/data/internal/IdcRecords.h"

#include <array>
#include <string>
#include <unordered_map>
#include <vector>

/// Fills the columns of a table with what records say, in the order in which they come.
///
/// Columns that are shorter than the first one are to be filled, with their last value each, whenever a row of the ego
/// vehicle comes. That is put off until a column gets its next value, or the end: nothing is done for what waits.
class IdcDataFile::Listener
{
public:
    /// Makes the nine ego columns. \param table filled as long as this object is there. \param names nine at least.
    Listener(IdcDataFile& table, const std::vector<std::string>& names);

    void onMeasurements(const brvUtils::IdcEgo& ego);
    void onObjects(const std::vector<brvUtils::IdcObject>& objects);

    /// Fills all columns to the length of the first one.
    void finish();

private:
    using Values = std::vector<double>;

    struct Object
    {
        std::array<Values*, 13> values{}; ///< Of its columns, in their order. Owned by the table.
        std::uint64_t list = 0; ///< The number of the last list that it was in.
        std::uint64_t round = 0; ///< How often the columns had been to be filled by then.
    };

    Object& objectOf(std::int32_t id);
    void makeColumns(Object& object, std::int32_t id);
    void startRound();
    void fill(Values& values) const;

    IdcDataFile& table_;
    Values* first_ = nullptr; ///< Of the first column. Owned by the table, as all of them.
    std::array<Values*, 9> ego_{}; ///< By the order of the names in egoNames; null where no column has that name.
    std::unordered_map<std::int32_t, Object> objects_; ///< By identifier.
    double startTime_ = -1.0; ///< Seconds, of the first measurement list; as long as there is none, -1.
    std::uint64_t list_ = 0; ///< How many object lists there were.
    std::uint64_t round_ = 0; ///< How often the columns were to be filled.
    std::size_t length_ = 0; ///< The length of the first column when they were last to be filled.
};
