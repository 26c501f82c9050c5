#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace suite {

/// Writes rows of numbers to a text table: a line of names, then a line per row, with commas between the fields.
///
/// Rows are collected and written together, always whole ones. Where a file holds such a table already its rows stay, and
/// new ones follow the last of them; what a power failure or a full disk left of a row is cut off. While the file cannot be
/// written the rows wait, up to a MiB of them. One writer per file, one thread at a time.
class CsvWriter
{
public:
    /// Opens the file, or makes it.
    /// \param names of the columns, without commas and line ends.
    /// \param interval longest time that a row waits until rows that are added have those before them written.
    /// \throw brvUtils::FileError when it cannot be opened, or holds something else than such a table.
    CsvWriter(std::filesystem::path file, const std::vector<std::string>& names, std::chrono::milliseconds interval);

    /// Writes what waits, if that is possible.
    ~CsvWriter();
    CsvWriter(const CsvWriter&) = delete;
    CsvWriter& operator=(const CsvWriter&) = delete;

    /// The last row that the file had before, empty when it had none.
    const std::vector<double>& lastRow() const { return lastRow_; }

    /// Bytes of a cut row that were removed from the file.
    std::uintmax_t removed() const { return removed_; }

    /// Takes a row of as many numbers as there are names; 12 digits of each count. Writes what waits when it is time.
    /// Where too much waits the row is lost.
    void add(const std::vector<double>& row);

    /// Writes all that waits. \return false when it cannot, see fault(). Nothing of it is then in the file.
    bool write();

    /// Why the last attempt to write failed, in the system's words; empty when it did not.
    const std::string& fault() const { return fault_; }

    /// Rows that were added and are not in the file: those that wait, and those that are lost.
    std::size_t waiting() const { return waitingRows_; }
    std::size_t lost() const { return lostRows_; }

private:
    void goOn(const std::string& header);
    bool open();
    bool cutBack() const;

    const std::filesystem::path file_;
    const std::size_t columns_;
    const std::chrono::milliseconds interval_;
    std::ofstream stream_;
    bool regular_ = true; ///< Not a device.
    std::uintmax_t size_ = 0; ///< Of the whole rows in the file.
    std::vector<double> lastRow_;
    std::uintmax_t removed_ = 0;
    std::string text_; ///< That waits.
    std::size_t waitingRows_ = 0;
    std::size_t lostRows_ = 0;
    std::chrono::steady_clock::time_point attempt_; ///< The last one to write.
    std::string fault_;
};

} // namespace suite
