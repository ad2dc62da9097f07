// The ID list, byte by byte.
#include "driver/idtable.hpp"

#include "unit/library_calls.hpp"
#include "unit/model_tables.hpp"
#include "unit/printed.hpp"
#include "unit/support.hpp"

#include "model/rsd.hpp"
#include "settings/settings.hpp"

#include <array>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

struct Listed {
    std::string name;
    std::int16_t id;
};

// An object list, until the end of a scope.
struct ListedObjects {
    explicit ListedObjects(std::vector<Listed> listed) : list(std::move(listed)) {
        for (const Listed& each : list) {
            objects.push_back(plainObject());
            objects.back().id = each.id;
        }
        for (std::size_t i = 0; i < list.size(); ++i) {
            nameTable.push_back(list[i].name.data());
            objectTable.push_back(&objects[i]);
        }
        ObjList.nObj = static_cast<std::uint32_t>(list.size());
        ObjList.name = nameTable.data();
        ObjList.rsd = objectTable.data();
    }
    ~ListedObjects() { ObjList = {}; }
    ListedObjects(const ListedObjects&) = delete;
    ListedObjects& operator=(const ListedObjects&) = delete;

    std::vector<Listed> list;
    std::vector<RSD> objects;
    std::vector<char*> nameTable;
    std::vector<RSD*> objectTable;
};

// The date line's text for now: hour:minute month/day/years since 1900.
std::string timeText() {
    const std::time_t now = std::time(nullptr);
    const std::tm date = *std::localtime(&now);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d %02d/%02d/%02d", date.tm_hour, date.tm_min,
                  date.tm_mon + 1, date.tm_mday, date.tm_year);
    return text.data();
}

// Expects the list `header`, just written, with the time of one of the moments around the writing.
void expectHeader(const std::string& header, const std::string& tmd, const std::string& array,
                  const std::string& before) {
    const auto expected = [&](const std::string& time) {
        return "/*\n *\tTMD ID List for \"" + tmd + "\"\n *\n *\t\t Created by vexbind(v3.72) at " + time +
               "\n *\n *\tvexbind: RSD to TMD model converter\n */\n\n" + array;
    };
    const std::string bytes = bytesOf(header);
    if (bytes != expected(before)) {
        EXPECT_EQ(bytes, expected(timeText()));
    }
}

} // namespace

TEST(WriteIdtable, ListsTheObjectsInTheirOrder) {
    const TestDirectory directory;
    const ListedObjects objects(
        {{"cube", 3}, {"Ball", -1}, {"zero", 0}, {"last", 32767}, {"low", -32768}, {"cube", 3}, {"", 7}});
    const std::string before = timeText();
    write_idtable("out/model.tmd");
    expectHeader("model.h", "out/model.tmd",
                 "int model_list[] = {\n"
                 "\t3,\t/* cube */\n"
                 "\t-1,\t/* Ball has no ID */\n"
                 "\t0,\t/* zero */\n"
                 "\t32767,\t/* last */\n"
                 "\t-1,\t/* low has no ID */\n"
                 "\t3,\t/* cube */\n"
                 "\t7,\t/*  */\n"
                 "};\n",
                 before);
}

TEST(WriteIdtable, OfNoObjectsIsAnEmptyArray) {
    const TestDirectory directory;
    const ListedObjects objects({});
    const std::string before = timeText();
    write_idtable("a.tmd");
    expectHeader("a.h", "a.tmd", "int a_list[] = {\n};\n", before);
}

TEST(WriteIdtable, IsNamedAfterTheTmdInTheWorkingDirectory) {
    struct Row {
        const char* tmd;
        const char* header;
        const char* base;
    };
    const std::vector<Row> rows = {
        {"a.tmd", "a.h", "a"},
        {"a", "a.h", "a"},
        {"/x/y/b.TMD", "b.h", "b"},
        {"../c.d/e", "e.h", "e"},
        {"a b.tmd", "a b.h", "a b"},
        // An extension that is left is no longer replaced.
        {"out/f.g.tmd", "f.g", "f.g"},
        {"h.h.tmd", "h.h", "h.h"},
        {"i.h", "i.h", "i"},
        {"j.H.tmd", "j.H", "j.H"},
    };
    const ListedObjects objects({{"n", 1}});
    for (const Row& row : rows) {
        SCOPED_TRACE(row.tmd);
        const TestDirectory directory;
        const std::string before = timeText();
        write_idtable(row.tmd);
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(".")) {
            names.push_back(entry.path().filename());
        }
        ASSERT_EQ(names, std::vector<std::string>{row.header});
        expectHeader(row.header, row.tmd, std::string("int ") + row.base + "_list[] = {\n\t1,\t/* n */\n};\n",
                     before);
    }
}

TEST(WriteIdtable, ReplacesAFile) {
    const TestDirectory directory({{"a.h", std::string(1000, 'x')}});
    const ListedObjects objects({{"n", 1}});
    const std::string before = timeText();
    write_idtable("a.tmd");
    expectHeader("a.h", "a.tmd", "int a_list[] = {\n\t1,\t/* n */\n};\n", before);
}

TEST(WriteIdtable, IsAnnouncedWhenVerbose) {
    const TestDirectory directory;
    std::FILE* before = vout;
    const auto announcement = [] {
        return printed([](std::FILE* stream) {
            vout = stream;
            write_idtable("out/a.tmd");
        });
    };
    const std::string quiet = announcement();
    Verbose = 1;
    const std::string verbose = announcement();
    vout = before;
    EXPECT_EQ(quiet, "");
    EXPECT_EQ(verbose, "\n   ID file     : \"a.h\" is created.\n");
}

TEST(WriteIdtable, EndsTheRunWhenItCannotBeMade) {
    const TestDirectory directory({{"a.h/", ""}});
    Verbose = 1;
    EXPECT_EXIT(write_idtable("a.tmd"), ExitedWithCode(30), Eq("\nCannot open: \"a.h\"\n"));
}

TEST(WriteIdtable, GivesBackWhatItTakes) {
    const TestDirectory directory;
    write_idtable("out/model.tmd");
    // "model.tmd" and "model.h" with their ends and, for the file, its record and names.
    EXPECT_EQ(allocCount, 5);
    EXPECT_EQ(freeCount, 5);
}

// As the date of a time that has no year: a field of zeros, of which the month counts from 1.
TEST(WriteIdtable, HasNoDateWhenThereIsNoLocalTime) {
    const TestDirectory directory;
    const ListedObjects objects({{"n", 1}});
    {
        const NoLocalTime noTime;
        write_idtable("a.tmd");
    }
    expectHeader("a.h", "a.tmd", "int a_list[] = {\n\t1,\t/* n */\n};\n", "00:00 01/00/00");
}
