#include "brvUtils/data/CsvDataFile_test.h"

#include <cstring>
#include <limits>
#include <random>

namespace csvTest {
namespace {

/// The same by the C library, line by line and value by value.
std::vector<std::string> reference(const std::string& content, const Loading& how)
{
    struct Column
    {
        char type;
        std::string values;
    };
    std::vector<Column> columns;
    std::vector<std::string> names;
    std::string text;
    for (std::size_t i = 0; i < content.size(); ++i) { // as text mode does
        if (content[i] != '\r' || i + 1 == content.size() || content[i + 1] != '\n') {
            text += content[i];
        }
    }
    const auto split = [&](const std::string& line) {
        std::vector<std::string> fields;
        std::size_t begin = 0;
        for (std::size_t end = 0; !line.empty() && end != std::string::npos; begin = end + 1) {
            end = line.find(how.separator, begin);
            fields.push_back(line.substr(begin, end - begin));
        }
        return fields;
    };
    std::istringstream lines(text);
    std::string line;
    std::getline(lines, line);
    names = split(line);
    while (std::getline(lines, line)) {
        std::size_t k = 0;
        const std::vector<std::string> fields = split(line);
        for (std::size_t i = 0; i < std::min(names.size(), fields.size()); ++i) {
            if (!how.wanted.empty() && std::find(how.wanted.begin(), how.wanted.end(), names[i]) == how.wanted.end()) {
                continue;
            }
            char type = 's';
            std::string value = fields[i];
            const char* begin = fields[i].c_str();
            char* end = nullptr;
            const long long integer = std::strtoll(begin, &end, 10); // a long has 32 bits on Windows, and clamps as well
            if (how.force < 1 && end != begin) {
                const int clamped = static_cast<int>(std::clamp<long long>(integer, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
                type = 'i';
                value.assign(reinterpret_cast<const char*>(&clamped), sizeof clamped);
            } else if (how.force == 1) {
                const double number = std::strtod(begin, &end);
                if (end != begin) {
                    type = 'd';
                    value.assign(reinterpret_cast<const char*>(&number), sizeof number);
                }
            }
            if (columns.size() < k + 1) {
                columns.push_back({type, ""});
            }
            if (columns[k].type == type) {
                columns[k].values += value + (type == 's' ? "\n" : "");
            }
            ++k;
        }
    }
    std::vector<std::string> all;
    for (const Column& column : columns) {
        all.push_back(column.type + column.values);
    }
    return all;
}

std::vector<std::string> loaded(const std::string& path, const Loading& how)
{
    CsvDataFile file(how.separator, static_cast<CsvDataFile::TypeForced>(how.force));
    EXPECT_TRUE(file.load(path, how.wanted));
    std::vector<std::string> all;
    for (std::size_t i = 0; i < file.getColmnCount(); ++i) {
        const std::size_t size = file[i]->size();
        if (const int* integers = file[i]->getIntData()) {
            all.push_back('i' + std::string(reinterpret_cast<const char*>(integers), size * sizeof *integers));
        } else if (const double* doubles = file[i]->getDoubleData()) {
            all.push_back('d' + std::string(reinterpret_cast<const char*>(doubles), size * sizeof *doubles));
        } else {
            all.emplace_back("s");
            for (std::size_t row = 0; row < size; ++row) {
                all.back() += file[i]->getStringData()[row] + '\n';
            }
        }
    }
    return all;
}

std::vector<std::string> nastyNumbers()
{
    std::vector<std::string> numbers = {"", "0", "-0", "+0", "+", "-", ".", "+.", "-.e1", "e5", "1e", "1e+", "1e-", "1e5", "1E+05", "1.e2", ".5",
        "5.", "+.5e-3", "--1", "+-1", "-+1", "1-", "1 2", "1,5", "0x", "0X", "0x.", "0x.p1", "0xg", "00x1", "0x1", "0x1.8p1", "0X.8P-1", "0x1p", "0x1p+",
        "0x1.00000000000008p0", "0x1.000000000000081p0", "0x1.00000000000018p0", "0x1.fffffffffffff8p1023", "0x1.fffffffffffff7p1023", "0x1p-1074",
        "0x1p-1075", "0x1.0000001p-1075", "0x1.8p-1074", "0x3p-1075", "0x1p-1076", "0x0.00000000000000000000001p-1000", "0x1p2000", "0x1p-99999999999999999999",
        "0x1p99999999999999999999", "0x0p99999", "0x123456789abcdef01234567", "0x123456789abcdef00000000000000001p-10", "-0x1.8", "x", "12x3", "0x1.8.8",
        "inf", "-INF", "infin", "Infinity", "+infinityx", "in", "i", "nan", "-NaN", "nan1", "na", "1e400", "-1e400", "1e-400", "4.9e-324", "2.4703282292062327e-324",
        "2.4703282292062328e-324", "2.2250738585072011e-308", "2.2250738585072014e-308", "1.7976931348623157e308", "1.7976931348623158e308", "1.7976931348623159e308",
        "9007199254740993", "9007199254740993.0000000000000001", "8.5", "0.1", "123456789012345678901234567890", "1e99999999999999999999", "1e-99999999999999999999",
        "0e99999999999999999999", "2147483647", "2147483648", "-2147483648", "-2147483649", "4294967296", "99999999", "999999999", "12345678", "1234567",
        "18446744073709551617", "-99999999999999999999999", "00000000000000000000012", "\xD9\xA1", "\xC2\xA0" "1", "1_000", "1'000", "1e5.5", "0b1", "truE", "5\x01"};
    numbers.push_back(std::string("1\0002", 3));
    numbers.push_back(std::string("\0001", 2));
    numbers.push_back("0." + std::string(800, '3') + "e5");
    numbers.push_back(std::string(800, '7'));
    numbers.push_back("0." + std::string(900, '0') + "1e900");
    numbers.push_back("9007199254740992." + std::string(1, '5') + std::string(800, '0') + "1");
    numbers.push_back("1.00000000000000011102230246251565404236316680908203125"); // exactly between two doubles
    numbers.push_back("1.00000000000000011102230246251565404236316680908203124");
    numbers.push_back("1.00000000000000011102230246251565404236316680908203126" + std::string(700, '0'));
    const std::size_t plain = numbers.size();
    for (const char* blanks : {" ", "\t", "\v", "\f", "\r", " \t\v\f\r "}) {
        for (std::size_t i = 0; i < plain; i += 3) {
            numbers.push_back(blanks + numbers[i]);
            numbers.push_back(numbers[i] + blanks);
        }
    }
    return numbers;
}

/// Texts for random tables.
class Random
{
public:
    explicit Random(unsigned seed)
        : engine_(seed)
        , nasty_(nastyNumbers())
    {
    }

    std::size_t below(std::size_t limit) { return engine_() % limit; }

    std::string field()
    {
        switch (below(8)) {
        case 0: return nasty_[below(nasty_.size())];
        case 1: return std::to_string(below(2) == 0 ? -static_cast<int>(below(100'000)) : static_cast<int>(below(1'000'000'000)));
        case 2: return "";
        case 3: return "some text " + std::string(below(20), 'x');
        default: break;
        }
        char text[64];
        const double number = std::ldexp(static_cast<double>(engine_()), static_cast<int>(below(200)) - 100);
        std::snprintf(text, sizeof text, below(2) == 0 ? "%.*f" : "%.*e", static_cast<int>(below(22)), number);
        return text;
    }

    std::string table(char separator)
    {
        const std::size_t columns = 1 + below(8);
        const char* lineEnd = below(2) == 0 ? "\n" : "\r\n";
        std::string content;
        for (std::size_t i = 0; i < columns; ++i) {
            content += (i > 0 ? std::string(1, separator) : "") + "abcd"[below(4)];
        }
        for (std::size_t row = below(40); row > 0; --row) {
            content += lineEnd;
            const std::size_t fields = below(5) > 0 ? columns : below(columns + 3);
            const std::string usual = field();
            for (std::size_t i = 0; i < fields; ++i) {
                content += (i > 0 ? std::string(1, separator) : "") + (below(3) == 0 ? usual : field());
            }
        }
        return content + (below(2) == 0 ? lineEnd : "");
    }

private:
    std::mt19937 engine_;
    std::vector<std::string> nasty_;
};

// The C library of MinGW gives other NaNs for "nan(1)", and is asked for what is the same everywhere.
TEST(CsvDataFile, ReadsNumbersAsTheCLibraryDoes)
{
    const TemporaryFolder folder;
    std::size_t number = 0;
    for (const std::string& text : nastyNumbers()) {
        for (const char* first : {"1", "word"}) { // the type of the column
            const std::string content = std::string("a;b\n") + first + ";0\n" + text + ";" + text + "\n" + text + "\n";
            const std::string path = folder.write(std::to_string(number++) + ".csv", content);
            for (const int force : {0, 1}) {
                ASSERT_EQ(loaded(path, {';', force}), reference(content, {';', force})) << '"' << text << "\" " << force;
            }
        }
    }
}

TEST(CsvDataFile, ReadsPayloadsOfNan)
{
    const auto bitsOf = [](const char* text) {
        const TemporaryFolder folder;
        CsvDataFile file(';', CsvDataFile::FORCE_DOUBLE);
        EXPECT_TRUE(file.load(folder.write("table.csv", std::string("a\n") + text), {}));
        std::uint64_t bits = 0;
        std::memcpy(&bits, file[0]->getDoubleData(), sizeof bits);
        return bits;
    };
    EXPECT_EQ(bitsOf("nan(123)"), 0x7ff800000000007bu);
    EXPECT_EQ(bitsOf("-NAN(0x10)x"), 0xfff8000000000010u);
    for (const char* text : {"nan()", "nan(", "nan(12", "nan(12x)", "nan(1 2)", "nan(?)"}) {
        EXPECT_EQ(bitsOf(text), 0x7ff8000000000000u) << text;
    }
}

/// Every separator, every cut, one thread and several: the result is always the same.
TEST(CsvDataFile, ReadsAnyTableAtAnyCut)
{
    const TemporaryFolder folder;
    Random random(42);
    const char separators[] = {';', ',', '\t', ' ', '\v', '|', '5', '0', '.', '-', '+', 'e', 'E', 'x', 'i', 'n', 'f', 'a', 'N', '\r', '\n', '\0', '\xFF'};
    for (int round = 0; round < 4; ++round) {
        for (const char separator : separators) {
            const std::string content = random.table(separator);
            const std::string path = folder.write("table.csv", content);
            const Names wanted = random.below(3) == 0 ? Names {"a", "c"} : Names {};
            for (const int force : {-1, 1, 2}) {
                const Loading how {separator, force, wanted};
                const std::vector<std::string> expected = reference(content, how);
                ASSERT_EQ(loaded(path, how), expected) << content;
                for (const unsigned threads : {1u, 3u}) {
                    const std::size_t blockSize = 1 + random.below(random.below(2) == 0 ? 12 : 200);
                    const Tuned tuned(threads, blockSize);
                    ASSERT_EQ(loaded(path, how), expected) << "separator " << int(separator) << ", " << threads << " threads, blocks of " << blockSize << '\n'
                                                           << content;
                }
            }
        }
    }
}

TEST(CsvDataFile, KnowsTheTypeOfAColumnWhereverItsFirstValueIs)
{
    std::string content = "a;b;c\n";
    for (int row = 0; row < 3000; ++row) {
        content += std::to_string(row) + (row < 1500 ? "\n" : row < 2000 || row % 7 == 0 ? ";word\n" : ";5;6.5\n");
    }
    const TemporaryFolder folder;
    const std::string path = folder.write("table.csv", content);
    const std::vector<std::string> expected = reference(content, {';', 1});
    for (const unsigned threads : {1u, 2u, 4u}) {
        for (const std::size_t blockSize : {10u, 100u, 4096u}) {
            const Tuned tuned(threads, blockSize);
            EXPECT_EQ(loaded(path, {';', 1}), expected) << threads << " threads, blocks of " << blockSize;
        }
    }
}

} // namespace
} // namespace csvTest
