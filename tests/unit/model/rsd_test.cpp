// The object list and its records.
#include "model/rsd.hpp"

#include "unit/model_tables.hpp"
#include "unit/support.hpp"

#include "utilkit/stralloc.hpp"
#include "utilkit/tracked.hpp"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

// Expects a list of one object to be left alone by taking out another.
void expectLeftAlone(RSD& listed, RSD& other) {
    initObjList(2);
    ObjList.nObj = 1;
    ObjList.rsd[0] = &listed;
    const Counters before = counters();
    deleteRSD(&other);
    EXPECT_EQ(counters(), before);
    EXPECT_EQ(ObjList.nObj, 1U);
    EXPECT_EQ(ObjList.rsd[0], &listed);
    freeObjList();
    ObjList = {};
}

} // namespace

TEST(InitObjList, OfNoObjectsHasNoArrays) {
    const FreshGlobals globals;
    EXPECT_EQ(initObjList(0), 1);
    EXPECT_EQ(ObjList.name, nullptr);
    EXPECT_EQ(ObjList.rsd, nullptr);
    EXPECT_EQ(ObjList.nObj, 0U);
    EXPECT_EQ(allocCount, 0);
}

TEST(DeleteRsd, ReleasesTheNameTheRecordAndWhatItOwns) {
    const FreshGlobals globals;
    initObjList(2);
    newRSD("x/first.rsd");
    RSD* object = newRSD("second");
    object->ply = strCopy("a").release();
    object->mat = strCopy("b").release();
    object->grp = strCopy("c").release();
    object->dir = strCopy("/d").release();
    object->tex = trackedTable<char*>(2, countedPointer, "NAME");
    object->ntex = 2;
    object->tex[0] = strCopy("e").release();
    object->tex[1] = strCopy("f").release();
    EXPECT_EQ(freeCount, 0);
    deleteRSD(object);
    // Its list name, four names of its own, two textures and their table, the record.
    EXPECT_EQ(freeCount, 1 + 4 + 2 + 1 + 1);
    EXPECT_EQ(ObjList.nObj, 2U);
    EXPECT_EQ(ObjList.name[1], nullptr);
    EXPECT_EQ(ObjList.rsd[1], nullptr);
    EXPECT_STREQ(ObjList.name[0], "first");
    deleteRSD(ObjList.rsd[0]);
    EXPECT_EQ(freeCount, 9 + 2);
    freeObjList();
    EXPECT_EQ(freeCount, 9 + 2 + 2);
    EXPECT_EQ(freeCount, allocCount);
    ObjList = {};
}

TEST(DeleteRsd, LeavesARecordAloneThatIsNotListed) {
    const FreshGlobals globals;
    RSD listed = plainObject();
    RSD sameNumber = plainObject();
    RSD behind = plainObject();
    behind.number = 1;
    expectLeftAlone(listed, sameNumber);
    expectLeftAlone(listed, behind);
}

TEST(EnterDirectory, OfAFileBelowTheRootIsTheRoot) {
    const TestDirectory here;
    std::string directory;
    RSD object = plainObject();
    object.dir = directory.data();
    enter_directory(&object);
    EXPECT_EQ(workingDirectory(), "/");
}

TEST(GetRsdInfo, EndsTheRunWhereItCouldNotComeBack) {
    const TestDirectory here({{"m.rsd", "@RSD940102\nPLY=a\nMAT=b\nNTEX=0\n"}, {"gone/", ""}});
    enter("gone");
    std::filesystem::remove(here.path() + "/gone");
    initObjList(1);
    const std::string name = here.path() + "/m.rsd";
    EXPECT_EXIT(get_rsd_info(name.c_str()), ExitedWithCode(51), Eq("\nCannot getcwd: \"" + name + "\"\n"));
    freeObjList();
}

TEST(ReturnToStart, EndsTheRunWhereThereIsNoWayBack) {
    const TestDirectory here;
    const auto returnTo = [](const char* directory) {
        std::strcpy(cwd.data(), directory);
        return_to_start();
        std::exit(0);
    };
    EXPECT_EXIT(returnTo("."), ExitedWithCode(0), Eq(""));
    EXPECT_EXIT(returnTo("gone"), ExitedWithCode(51), Eq("\nCannot getcwd: \"gone\"\n"));
}
