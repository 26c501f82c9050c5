#pragma once

#include "brvUtils/export.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// A table of recorded data: named columns of one type each, filled by the readers derived from it.
///
/// Columns may differ in length. Any thread may read as long as nobody loads or adds. Each load deletes
/// the columns of the one before, and with them all that leads into these.
class BRVUTILS_API DataMatrix
{
public:
    /// A column. Values of another type are refused: a column of doubles can be read as integers, nothing else is converted.
    class BRVUTILS_API DataCol
    {
    public:
        virtual ~DataCol();

        /// The value of a row below size(). False, and `out` stays as it is, when the column has another type.
        virtual bool getData(size_t row, std::string& out) const = 0;
        /// The same; doubles are cut towards zero, and to the limits of int. What is no number becomes 0.
        virtual bool getData(size_t row, int& out) const = 0;
        /// The same, for a column of doubles.
        virtual bool getData(size_t row, double& out) const = 0;

        /// All values, one behind the other, until something is added. Null when the column is empty or has another type.
        virtual double const* getDoubleData() const = 0;
        /// The same.
        virtual int const* getIntData() const = 0;
        /// The same.
        virtual std::string const* getStringData() const = 0;

        /// Appends a value. False, and the value is dropped, when the column has another type.
        virtual bool add(std::string const& value) = 0;
        /// The same.
        virtual bool add(int value) = 0;
        /// The same.
        virtual bool add(double value) = 0;

        /// How many values there are.
        virtual size_t size() const = 0;

        std::string name; ///< By which the table finds it.
    };

    template <typename Value>
    class TypedDataCol;

    using DoubleDataCol = TypedDataCol<double>; ///< A column of doubles.
    using IntDataCol = TypedDataCol<int>; ///< A column of integers.
    using StringDataCol = TypedDataCol<std::string>; ///< A column of texts.

    /// Told now and then how many bytes of how many are done, at the end all of them; false stops the loading.
    using Progress = std::function<bool(uint64_t done, uint64_t total)>;

    /// An empty table without a name.
    DataMatrix();

    /// Deletes the columns.
    virtual ~DataMatrix();

    /// Copies share the columns of the original, and whichever is destroyed first deletes them: kept for callers.
    DataMatrix(DataMatrix const&);
    /// The same. The columns that it had stay, and nobody deletes them.
    DataMatrix& operator=(DataMatrix const&);

    /// Fills the table from a file.
    /// \param fileName UTF-8. \param wantedColumns names of the columns to take; the readers say what none stands for.
    /// \return what each reader says. A load that the progress function stopped answers false and keeps what it has.
    virtual bool load(std::string const& fileName, std::vector<std::string> const& wantedColumns) = 0;

    /// Sets who is told of the progress of later loads, on the thread that loads; an empty function for nobody.
    void setProgress(Progress progress);

    /// The path last given to load.
    std::string const& getFileName() const;

    /// How many columns there are (spelling kept for callers).
    size_t getColmnCount() const;

    /// The length of the first column, which others may fall short of or exceed; 0 without columns.
    size_t getRowsCount() const;

    /// The name of a column, which must be there.
    std::string const& getDataName(size_t column) const;

    /// Whether there is a column of that name.
    bool exists(std::string const& name) const;

    /// The column of that name; of several the one that came last.
    /// \throw std::out_of_range "Can't find <name>".
    DataCol const* operator[](std::string const& name) const;

    /// A column, which must be there.
    DataCol const* operator[](size_t const& column) const;

    /// A value. False, and `out` stays as it is, when column or row is not there, or the column does not give that type.
    bool getData(size_t column, size_t row, double& out) const;
    /// The same.
    bool getData(size_t column, size_t row, int& out) const;
    /// The same.
    bool getData(size_t column, size_t row, std::string& out) const;

protected:
    /// For readers: deletes all columns.
    void clear();

    /// Where a column is.
    struct ColumnPlace
    {
        DataCol* column; ///< Not owned.
        size_t index; ///< In `columns`.
    };

    /// Appends an empty column of that name, owned by the table, by which it is found from now on.
    template <typename Value>
    TypedDataCol<Value>& append(std::string const& name)
    {
        auto column = std::make_unique<TypedDataCol<Value>>();
        column->name = name;
        TypedDataCol<Value>& appended = *column;
        enter(std::move(column));
        return appended;
    }

    /// For readers. \return false when the loading is to stop.
    bool report(uint64_t done, uint64_t total) const;

    std::string fileName; ///< The path last given to load.
    std::vector<std::string> extraNames; ///< Of no use so far: kept for callers.
    std::vector<DataCol*> columns; ///< Owned.
    std::map<std::string, ColumnPlace> columnIndex; ///< By name; of several the one that came last.

private:
    static int toInt(double value);
    bool has(size_t column, size_t row) const;
    void enter(std::unique_ptr<DataCol> column);

    Progress progress_;
};

/// A column of doubles, integers or texts.
template <typename Value>
class DataMatrix::TypedDataCol : public DataCol
{
public:
    bool getData(size_t row, std::string& out) const override { return read(row, out); }
    bool getData(size_t row, int& out) const override
    {
        if constexpr (std::is_same_v<Value, double>) {
            out = DataMatrix::toInt(values[row]);
            return true;
        } else {
            return read(row, out);
        }
    }
    bool getData(size_t row, double& out) const override { return read(row, out); }

    double const* getDoubleData() const override { return first<double>(); }
    int const* getIntData() const override { return first<int>(); }
    std::string const* getStringData() const override { return first<std::string>(); }

    bool add(std::string const& value) override { return append(value); }
    bool add(int value) override { return append(value); }
    bool add(double value) override { return append(value); }

    size_t size() const override { return values.size(); }

    std::vector<Value> values; ///< One per row.

private:
    template <typename Wanted>
    bool read(size_t row, Wanted& out) const
    {
        if constexpr (std::is_same_v<Value, Wanted>) {
            out = values[row];
        }
        return std::is_same_v<Value, Wanted>;
    }

    template <typename Wanted>
    Wanted const* first() const
    {
        if constexpr (std::is_same_v<Value, Wanted>) {
            return values.empty() ? nullptr : values.data();
        } else {
            return nullptr;
        }
    }

    template <typename Given>
    bool append(Given const& value)
    {
        if constexpr (std::is_same_v<Value, Given>) {
            values.push_back(value);
        }
        return std::is_same_v<Value, Given>;
    }
};
