#include "brvUtils/os/NetworkDrive.h"

#include "brvUtils/os/linux/MountTable.h"

#include <gtest/gtest.h>

#include <sstream>

namespace brvUtils::os {
namespace {

const char* const table = "22 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
                          "40 22 0:50 / /net rw shared:5 - nfs4 pc1:/export/data rw\n"
                          "41 40 0:51 / /net/local rw - ext4 /dev/sdb1 rw\n"
                          "42 22 0:52 / /with\\040blank rw shared:7 master:1 - nfs pc2:/a\\134b rw\n"
                          "43 22 0:53 / /samba rw - cifs //pc1/data rw\n"
                          "44 22 0:54 / /hidden rw - nfs4 pc1:/old rw\n"
                          "45 22 0:55 /part /hidden rw - nfs4 pc1:/new rw\n"
                          "broken line\n";

/// "server folder rest", or nothing.
std::string placeOf(const std::string& path)
{
    std::istringstream stream(table);
    const auto place = mountedPlace(stream, path);
    return place ? place->server + " " + place->folder + " " + place->rest : std::string();
}

TEST(MountTable, FindsTheMountThatAPathLiesOn)
{
    EXPECT_EQ(placeOf("/net/cars/a.xml"), "pc1 /export/data /cars/a.xml");
    EXPECT_EQ(placeOf("/net"), "pc1 /export/data ");
    EXPECT_EQ(placeOf("/network/cars"), "");
    EXPECT_EQ(placeOf("/net/local/x"), "") << "another disk below";
    EXPECT_EQ(placeOf("/with blank/x"), "pc2 /a\\b /x");
    EXPECT_EQ(placeOf("/samba/x"), "");
    EXPECT_EQ(placeOf("/hidden/x"), "pc1 /new/part /x") << "the last of two mounts on one folder";
    EXPECT_EQ(placeOf("relative"), "");
}

} // namespace
} // namespace brvUtils::os
