#include "brvUtils/ipc/CompositeShm_test.h"

#include "brvUtils/core/Errors.h"
#include "testing/CapturedOutput.h"
#include "testing/UniqueName.h"

#include <gmock/gmock.h>

#include <cstring>
#include <deque>
#include <memory>
#include <string>
#include <thread>

namespace {

using namespace brvUtils;
using namespace brvTesting;
using testing::EndsWith;
using testing::HasSubstr;

TEST(CompositeShm, TheCreatorsValuesAreWhatTheOpenerReads)
{
    const std::string name = uniqueName();
    const CapturedOutput captured;
    Composite creator(name, 100, 1, ShmWin32::New, 5);
    Number one(1, 11);
    Number two(2, 22);
    EXPECT_TRUE(creator.addPart(one));
    EXPECT_TRUE(creator.addPart(two));

    Composite opener(name, 100, 1, ShmWin32::New, 5);
    Number seenOne(1, -1);
    Number seenTwo(2, -2);
    opener.addPart(seenOne);
    opener.addPart(seenTwo);
    EXPECT_TRUE(creator.isCreated());
    EXPECT_FALSE(opener.isCreated());
    EXPECT_EQ(opener.getNbParts(), 3);
    EXPECT_TRUE(opener.get(seenTwo, 1.0));
    EXPECT_EQ(seenTwo.value, 22) << "an opener writes nothing when it registers";
    two.value = 33;
    EXPECT_TRUE(creator.put(two, 1.0));
    EXPECT_TRUE(opener.get(seenTwo, -1.0));
    EXPECT_EQ(seenTwo.value, 33);

    const auto* bytes = static_cast<const unsigned char*>(opener.getShmPtr());
    EXPECT_EQ(bytes[0] + 256 * bytes[1], 1) << "the layout version";
    EXPECT_EQ(bytes[2], 11);
    EXPECT_EQ(bytes[10], 33);
    EXPECT_EQ(opener.shmName(), compositeName(name) + "_5");
    const std::string composite = "omposite shared memory \"" + compositeName(name) + "\" v1";
    EXPECT_EQ(captured.out(), "Creating c" + composite + "\nCreated shared memory \"" + compositeName(name) + "_5\" successfully\nC" + composite
            + " successfully created.\nCreating c" + composite + "\nOpened existing shared memory \"" + compositeName(name)
            + "_5\" successfully\nC" + composite + " successfully created.\n");
}

TEST(CompositeShm, RefusesAnotherLayoutAndFreesTheInitialisationLock)
{
    const std::string name = uniqueName();
    Composite creator(name);
    static_cast<char*>(creator.getShmPtr())[0] = 7;
    const CapturedOutput captured;
    const std::string text = name + ": Version of shm of this program = 1 is different of the version of the shm = 7\nProgram will end.\n";
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            Composite opener(name);
            FAIL() << "opened another layout";
        } catch (const ConfigurationError& error) {
            EXPECT_EQ(error.what(), text);
        }
    }
    EXPECT_THAT(captured.out(), EndsWith(text));
}

TEST(CompositeShm, ThatCannotBeMadeIsAConfigurationError)
{
    const CapturedOutput captured;
    EXPECT_THROW(Composite(std::string(300, 'n')), ConfigurationError);
    EXPECT_THROW(Composite(uniqueName(), size_t{1} << 40), ConfigurationError);
}

TEST(CompositeShm, Takes255PartsAndNoMore)
{
    const std::string name = uniqueName();
    Composite composite(name, 256 * 4);
    std::deque<Number> numbers;
    for (int i = 0; i < 255; ++i) {
        numbers.emplace_back(1000 * i, i, 4);
        ASSERT_TRUE(composite.addPart(numbers.back())) << i;
    }
    const CapturedOutput captured;
    Number more(9, 9, 4);
    EXPECT_FALSE(composite.addPart(more));
    EXPECT_EQ(captured.out(), "No more Room to add object 9 in shm\nMaxPARTS : 256  nbParts : 256\nsize : 1026  \nname : "
            + compositeName(name) + "  \noffset[myNbParts] 1022 + shmAble.getSize() 4 + nbPadding 0\n");
    for (Number& number : numbers) {
        const int expected = number.value;
        number.value = -1;
        ASSERT_TRUE(composite.get(number, 0.0));
        ASSERT_EQ(number.value, expected);
    }
}

TEST(CompositeShm, APartMayFillTheSegmentToTheLastByte)
{
    Composite composite(uniqueName(), 10);
    Number tooLarge(1, 0, 11);
    Number fits(2, 5, 10);
    Number negative(3, 0, -1);
    const CapturedOutput captured;
    EXPECT_FALSE(composite.addPart(tooLarge));
    EXPECT_FALSE(composite.addPart(negative));
    EXPECT_TRUE(composite.addPart(fits));
    EXPECT_TRUE(composite.put(fits, 0.0));
}

TEST(CompositeShm, UnknownPartsAreRefused)
{
    Composite composite(uniqueName());
    Number unknown(42);
    const CapturedOutput captured;
    EXPECT_FALSE(composite.put(unknown, 0.0));
    EXPECT_FALSE(composite.get(unknown, 0.0));
    EXPECT_FALSE(composite.putWithoutProtect(unknown, 0.0));
    EXPECT_FALSE(composite.getWithoutProtect(unknown, 0.0));
    EXPECT_FALSE(composite.getAccess(unknown, 0.0));
    EXPECT_FALSE(composite.releaseAccess(unknown));
    composite.remove(unknown);
    std::string lines;
    for (int i = 0; i < 7; ++i) {
        lines += "CompositeShm: Object 42 not in Shm\n";
    }
    EXPECT_EQ(captured.out(), lines);
}

TEST(CompositeShm, AccessKeepsOthersOut)
{
    const std::string name = uniqueName();
    Composite composite(name);
    Composite other(name);
    Number part(1, 5);
    Number sameElsewhere(1);
    Number beside(2);
    Number besideElsewhere(2);
    composite.addPart(part);
    composite.addPart(beside);
    other.addPart(sameElsewhere);
    other.addPart(besideElsewhere);
    EXPECT_TRUE(composite.getAccess(part, 0.0));
    EXPECT_FALSE(other.get(sameElsewhere, 0.0));
    EXPECT_TRUE(other.put(besideElsewhere, 0.0)) << "parts do not wait for each other";
    part.value = 6;
    EXPECT_TRUE(composite.putWithoutProtect(part, 0.0));
    EXPECT_TRUE(other.getWithoutProtect(sameElsewhere, 0.0));
    EXPECT_EQ(sameElsewhere.value, 6);
    EXPECT_TRUE(composite.releaseAccess(part));
    EXPECT_FALSE(composite.releaseAccess(part));
    EXPECT_TRUE(other.get(sameElsewhere, 0.0));
}

TEST(CompositeShm, RemovesPartsButNeverTheVersion)
{
    Composite composite(uniqueName());
    std::deque<Number> parts;
    for (int id = 1; id <= 3; ++id) {
        composite.addPart(parts.emplace_back(id, 10 * id));
    }
    const CapturedOutput captured;
    ShmVersion record(1);
    composite.remove(record);
    EXPECT_EQ(captured.out(), "Object not in Shm\n");
    EXPECT_EQ(composite.getNbParts(), 4);

    composite.remove(parts[0]);
    EXPECT_EQ(composite.getNbParts(), 4);
    EXPECT_FALSE(composite.get(parts[0], 0.0));
    parts[2].value = 0;
    EXPECT_TRUE(composite.get(parts[2], 0.0));
    EXPECT_EQ(parts[2].value, 30) << "a part keeps its place and its lock";
    composite.remove(parts[2]);
    composite.remove(parts[1]);
    EXPECT_FALSE(composite.get(parts[1], 0.0));
    Number zero(0);
    EXPECT_FALSE(composite.get(zero, 0.0)) << "the places that became free hold nothing";
}

/// A segment in the memory of this process that counts what it is asked, aligns to 8 and may refuse.
class LocalShm : public IShm
{
public:
    explicit LocalShm(size_t size)
        : bytes_(size)
    {
        latest = this;
    }
    ~LocalShm() override { latest = nullptr; }

    void* getPtr() const override { return const_cast<char*>(bytes_.data()); }
    size_t getSize() const override { return bytes_.size(); }
    bool isCreated() const override { return true; }
    char const* getName() const override { return name_.c_str(); }
    size_t getAlignment() const override { return 8; }
    bool addPaddingBytes(size_t count) override
    {
        padding += count;
        return padding <= paddingAllowed;
    }
    void describePart(int id, size_t offset, size_t size, ISemaphore* semaphore) override
    {
        described += std::to_string(id) + ":" + std::to_string(offset) + "+" + std::to_string(size) + (semaphore != nullptr ? " " : "! ");
    }
    bool beforeRead(int) override { return readable; }
    void afterWrite(int id) override { written += std::to_string(id) + " "; }

    static IShm* make(char const*, size_t size, short, bool) { return new LocalShm(size); }

    static LocalShm* latest;
    size_t padding = 0;
    size_t paddingAllowed = 100;
    bool readable = true;
    std::string described;
    std::string written;

private:
    std::vector<char> bytes_;
    std::string name_ = uniqueName();
};

LocalShm* LocalShm::latest = nullptr;

TEST(CompositeShm, TellsTheSegmentWhatItDoes)
{
    Composite composite(uniqueName(), 60, 1, LocalShm::make);
    LocalShm& shm = *LocalShm::latest;
    Number one(7, 1, 10);
    Number two(8, 2, 8);
    composite.addPart(one);
    composite.addPart(two);
    EXPECT_EQ(shm.described, "0:0+8 1:8+16 2:24+8 ");
    EXPECT_EQ(shm.padding, 6u + 6u);
    EXPECT_EQ(shm.written, "0 0 1 2 ") << "each part when it is registered, the version also afterwards";
    shm.readable = false;
    two.value = 99;
    EXPECT_TRUE(composite.get(two, 0.0)) << "a refused read is no error";
    EXPECT_EQ(two.value, 99);
    shm.readable = true;
    composite.get(two, 0.0);
    EXPECT_EQ(two.value, 2);

    shm.described.clear();
    shm.written.clear();
    composite.remove(one);
    composite.put(two, 0.0);
    composite.remove(two);
    EXPECT_EQ(shm.described, "1:8+0! 2:24+0! ") << "it forgets the semaphores of both";
    EXPECT_EQ(shm.written, "2 ") << "the other processes still know the part by that number";

    shm.paddingAllowed = 0;
    const CapturedOutput captured;
    Number odd(9, 3, 9);
    EXPECT_FALSE(composite.addPart(odd));
    EXPECT_THAT(captured.out(), HasSubstr("ERROR: No more place to add 7 padding bytes for "));
    EXPECT_THAT(captured.out(), HasSubstr("Number.\n"));
}

class Faulty : public Number
{
public:
    using Number::Number;
    void get(void*) override { throw std::runtime_error("cannot read"); }
};

TEST(CompositeShm, APartThatThrowsLeavesItsLockFree)
{
    Composite composite(uniqueName());
    Faulty part(1);
    composite.addPart(part);
    EXPECT_THROW(composite.get(part, 0.0), std::runtime_error);
    EXPECT_TRUE(composite.put(part, 0.0));
}

} // namespace
