// TIM files: headers, codes, warnings, ends of files, and where textures are found.
#include "model/tim.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/support.hpp"
#include "unit/textures.hpp"

#include "settings/settings.hpp"
#include "utilkit/status.hpp"

#include <cerrno>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

// What reading a block makes of a file.
struct BlockResult {
    TextureRecord record;
    std::string messages;
    std::int32_t position;
};

using BlockReader = void (*)(FileRecord* file, TextureRecord& record);

BlockResult readBlock(BlockReader read, const std::string& bytes, std::uint8_t pmode = 0) {
    writeFile("in", bytes);
    BlockResult result{};
    result.record.pmode = pmode;
    FileRecord* file = fileOpen("in", "r");
    testing::internal::CaptureStderr();
    read(file, result.record);
    result.messages = testing::internal::GetCapturedStderr();
    result.position = file->position;
    fileClose(file);
    return result;
}

struct ImageRow {
    std::int32_t layout;
    std::int32_t x;
    std::int32_t y;
    std::uint8_t pmode;
    std::uint32_t tpage;
    bool accepted;
};

// A position of 16 bits with the sign is negative, and above all bounds.
const std::vector<ImageRow> imageRows = {
    {0, 640, 0, 8, 10, true},        {0, 0, 0, 0, 0, true},
    {0, 63, 255, 2, 256, true},      {0, 64, 256, 1, 145, true}, // 1 + 16 + 128
    {0, 1023, 511, 3, 415, true},                                // 15 + 16 + 384
    {0, 650, 259, 9, 154, true},                                 // 10 + 16 + 128
    {0, 0, 0, 7, 384, true},                                     // of the mode, two bits
    {0, 0, 0, 0xFC, 0, true},                                    //
    {0, 1024, 0, 0, 0, false},                                   // 16 mod 16
    {0, 0, 512, 0, 0, false},                                    // 2 mod 2
    {0, 1088, 768, 9, 145, false},                               // 1 + 16 + 128
    {0, -1, -1, 0, 31, false},       {0, -32768, -32768, 2, 256, false},
    {0, 0, -1, 0, 16, false},        {0, -1, 0, 0, 15, false},
    {1, 640, 0, 8, 10, true},        {1, 64, 256, 1, 545, true}, // 1 + 32 + 512
    {1, 1024, 512, 0, 80, true},                                 // 16 + 64
    {1, 2047, 1023, 3, 1663, true},                              // 31 + 96 + 1536
    {1, 2048, 0, 2, 1024, false},                                // 32 mod 32
    {1, 0, 1024, 1, 512, false},                                 // 4 mod 4
    {1, 2112, 1280, 0, 33, false},                               // 1 + 32
    {1, -1, -1, 0, 127, false},                                  // 31 + 96
    {2, 640, 0, 8, 10, true},                                    //
    {2, 64, 256, 1, 145, true},                                  // 1 + 16 + 128
    {2, 0, 512, 0, 2048, true},                                  //
    {2, 704, 768, 10, 2331, true},                               // 11 + 16 + 256 + 2048
    {2, 1023, 1023, 3, 2463, true},                              // 15 + 16 + 384 + 2048
    {2, 1024, 0, 2, 256, false},                                 //
    {2, 0, 1024, 0, 0, false},                                   // 4 mod 2, 2 mod 2
    {2, 1088, 1536, 0, 2049, false},                             // 1 + 0 + 2048
    {2, -1, -1, 0, 2079, false},                                 // 15 + 16 + 2048
};

// Any other layout has the codes of the first and accepts every image.
const std::vector<ImageRow> otherImageRows = {
    {3, 64, 256, 1, 145, true},
    {3, 1024, 0, 0, 0, true},
    {3, 5000, 3000, 0, 30, true}, // 14 + 16
    {3, -1, -1, 0, 31, true},
};

struct ClutRow {
    std::int32_t x;
    std::int32_t y;
    std::uint32_t id;
    bool acceptedBelow512; // in layout 0
    bool accepted;         // in all others
};

const std::vector<ClutRow> clutRows = {
    {0, 480, 30720, true, true},
    {0, 0, 0, true, true},
    {16, 1, 65, true, true},
    {1008, 511, 32767, true, true},
    {1008, 512, 32831, false, true},
    {1008, 1023, 65535, false, true},
    {0, 1024, 65536, false, false},
    {1024, 0, 0, false, false}, // 64 mod 64
    {1040, 2, 129, false, false},
    {8, 0, 0, false, false},
    {15, 0, 0, false, false},
    {17, 3, 193, false, false},
    {1023, 0, 63, false, false},
    {1016, 1023, 65535, false, false},
    {-16, 0, 63, false, false},
    {-1, -1, 0xFFFFFFFF, false, false}, // 63 + FFFFFFC0
    {0, -32768, 0xFFE00000, false, false},
};

// Data of which a read fails, rather than ends, behind `size` bytes.
struct BrokenData {
    std::string bytes;
    std::size_t next = 0;
};

ssize_t readBroken(void* cookie, char* buffer, std::size_t size) {
    auto* data = static_cast<BrokenData*>(cookie);
    if (data->next == data->bytes.size()) {
        errno = EIO;
        return -1;
    }
    const std::size_t count = data->bytes.copy(buffer, size, data->next);
    data->next += count;
    return static_cast<ssize_t>(count);
}

// Reads a block from a file that breaks behind these bytes.
void readBrokenBlock(BlockReader read, const std::string& bytes) {
    BrokenData data{.bytes = bytes};
    cookie_io_functions_t functions{};
    functions.read = readBroken;
    std::string name = "odd";
    FileRecord file{};
    file.stream = ::fopencookie(&data, "r", functions);
    file.name = name.data();
    TextureRecord record{};
    read(&file, record);
    std::fprintf(stderr, "position %d", file.position);
    std::fclose(file.stream);
}

std::string tim(std::uint32_t id, std::uint32_t flags, const std::string& blocks) {
    return wordBytes(id) + wordBytes(flags) + blocks;
}

// Opens texture 0 of an object that names it `name` and gives what the list then holds, followed by "+" when
// the texture opened.
std::string openedAs(const char* name, std::string& messages) {
    TexturedObject textured({name});
    testing::internal::CaptureStderr();
    FileRecord* file = openTIM(&textured.object, 0);
    messages = testing::internal::GetCapturedStderr();
    std::string result = textured.list[0];
    if (file != nullptr) {
        EXPECT_EQ(file->position, 4);
        fileClose(file);
        result += "+";
    }
    return result;
}

void expectImages(const std::vector<ImageRow>& rows) {
    const TestDirectory directory;
    for (const ImageRow& row : rows) {
        SCOPED_TRACE(testing::Message() << "layout " << row.layout << ", (" << row.x << " " << row.y
                                        << "), mode " << +row.pmode);
        arcade = row.layout;
        const TimBlock block{.length = 15,
                             .x = static_cast<std::uint32_t>(row.x),
                             .y = static_cast<std::uint32_t>(row.y),
                             .w = 0x1234,
                             .h = 0xFFFE,
                             .data = "abc"};
        const BlockResult result = readBlock(get_tex_pixel, blockBytes(block) + "rest", row.pmode);
        EXPECT_EQ(result.record.tpage, row.tpage);
        const std::string warning =
            "WARNING: Bad Texture address! : (" + std::to_string(row.x) + " " + std::to_string(row.y) + ")\n";
        EXPECT_EQ(result.messages, row.accepted ? "" : warning);
        EXPECT_EQ(result.record.pixel_x, static_cast<std::uint32_t>(row.x));
        EXPECT_EQ(result.record.pixel_y, static_cast<std::uint32_t>(row.y));
        EXPECT_EQ(result.record.pixel_w, 0x1234U);
        EXPECT_EQ(result.record.pixel_h, 0xFFFFFFFEU);
        EXPECT_EQ(result.record.pixel_size, 3U);
        EXPECT_EQ(result.record.clut_id, 0U);
        EXPECT_EQ(result.position, 15);
    }
}

} // namespace

TEST(GetTexPixel, ComputesThePageAndChecksThePosition) {
    expectImages(imageRows);
}

TEST(GetTexPixel, AcceptsEveryImageInOtherLayouts) {
    expectImages(otherImageRows);
}

TEST(GetTexClut, ComputesTheCodeAndChecksThePosition) {
    const TestDirectory directory;
    for (const ClutRow& row : clutRows) {
        for (const std::int32_t layout : {0, 1, 2, 3}) {
            SCOPED_TRACE(testing::Message() << "layout " << layout << ", (" << row.x << " " << row.y << ")");
            arcade = layout;
            const TimBlock block{.length = 17,
                                 .x = static_cast<std::uint32_t>(row.x),
                                 .y = static_cast<std::uint32_t>(row.y),
                                 .w = 16,
                                 .h = 0x8000,
                                 .data = "abcde"};
            const BlockResult result = readBlock(get_tex_clut, blockBytes(block) + "rest");
            EXPECT_EQ(result.record.clut_id, row.id);
            const std::string warning = "WARNING: Bad CLUT address! : (" + std::to_string(row.x) + " " +
                                        std::to_string(row.y) + ")" +
                                        (row.x % 16 != 0 ? " (x should be 16*n)\n" : "\n");
            const bool accepted = layout == 0 ? row.acceptedBelow512 : row.accepted;
            EXPECT_EQ(result.messages, accepted ? "" : warning);
            EXPECT_EQ(result.record.clut_x, static_cast<std::uint32_t>(row.x));
            EXPECT_EQ(result.record.clut_y, static_cast<std::uint32_t>(row.y));
            EXPECT_EQ(result.record.clut_w, 16U);
            EXPECT_EQ(result.record.clut_h, 0xFFFF8000U);
            EXPECT_EQ(result.record.clut_size, 5U);
            EXPECT_EQ(result.record.tpage, 0U);
            EXPECT_EQ(result.position, 17);
        }
    }
}

TEST(GetPmode, KeepsTheLowEightBits) {
    struct Row {
        std::uint32_t flags;
        std::uint8_t pmode;
    };
    for (const Row& row : {Row{0, 0}, Row{8, 8}, Row{0x109, 9}, Row{0xFFFFFF02, 2}, Row{0xFFFFFFFF, 255}}) {
        const TestDirectory directory({{"in", wordBytes(row.flags)}});
        FileRecord* file = fileOpen("in", "r");
        TextureRecord record{};
        record.pmode = 0x55;
        EXPECT_EQ(get_pmode(file, record), 1);
        EXPECT_EQ(record.pmode, row.pmode);
        EXPECT_EQ(file->position, 4);
        fileClose(file);
    }
}

TEST(GetTexClut, EndOfTheDataEndsWithStatus73AndThePosition) {
    const TestDirectory directory;
    struct Row {
        std::uint32_t length;
        std::size_t data;
        int position;
    };
    const std::vector<Row> rows = {
        {13, 0, 12},
        {14, 1, 13},
        {12 + 65536, 65535, 12 + 65535},
        {12 + 65537, 65536, 12 + 65536},
        {12 + 131072, 131071, 12 + 131071},
        {12 + 131073, 131072, 12 + 131072},
        {0x7FFFFFFF, 70000, 70012},
        // Lengths below that of the header ask for nearly 2^32 bytes.
        {11, 5, 17},
        {0, 0, 12},
        {0, 100, 112},
        {0xFFFFFFFF, 100, 112},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.length << ", " << row.data);
        writeFile("in", blockBytes({.length = row.length, .data = std::string(row.data, 'd')}));
        const std::string message =
            "\nUnexpected EOF: \"in\" at " + std::to_string(row.position) + " bytes\n";
        TextureRecord record{};
        EXPECT_EXIT(get_tex_clut(fileOpen("in", "r"), record), ExitedWithCode(73), Eq(message));
        EXPECT_EXIT(get_tex_pixel(fileOpen("in", "r"), record), ExitedWithCode(75), Eq(message));
    }
}

TEST(GetTexClut, FailedReadEndsWithStatus74AndThePosition) {
    const TestDirectory directory;
    const std::string bytes = blockBytes({.length = 100'000, .data = std::string(70'000, 'd')});
    EXPECT_EXIT(readBrokenBlock(get_tex_clut, bytes), ExitedWithCode(74),
                Eq("\nFail to read: \"odd\" at 70012 bytes\n"));
    EXPECT_EXIT(readBrokenBlock(get_tex_pixel, bytes), ExitedWithCode(76),
                Eq("\nFail to read: \"odd\" at 70012 bytes\n"));
}

TEST(GetTexClut, IgnoredFailuresReturn) {
    const TestDirectory directory;
    pushIgnore(EOF_ERR);
    pushIgnore(READ_ERR);
    const std::string bytes = blockBytes({.length = 100, .x = 16, .y = 2, .data = "abc"});
    for (const BlockReader read : {get_tex_clut, get_tex_pixel}) {
        EXPECT_EQ(readBlock(read, bytes).position, 15);
        EXPECT_EQ(readBlock(read, bytes).messages, "");
        testing::internal::CaptureStderr();
        readBrokenBlock(read, bytes);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "position 15");
    }
}

TEST(GetTexClut, HeaderCutShortEndsAsItsFieldDoes) {
    const TestDirectory directory;
    const std::string bytes = blockBytes({});
    for (const std::size_t length : {0U, 3U, 4U, 5U, 7U, 10U, 11U}) {
        SCOPED_TRACE(length);
        const int position = length < 4 ? 4 : 4 + (static_cast<int>(length - 4) / 2 + 1) * 2;
        writeFile("in", bytes.substr(0, length));
        for (const BlockReader read : {get_tex_clut, get_tex_pixel}) {
            EXPECT_EXIT(
                {
                    TextureRecord record{};
                    read(fileOpen("in", "r"), record);
                },
                ExitedWithCode(length < 4 ? 41 : 39),
                Eq("\nUnexpected EOF: \"in\" at " + std::to_string(position) + " bytes\n"));
        }
    }
}

TEST(ReadTex, ReadsAClutBlockWhereTheModeHasOne) {
    const TestDirectory directory;
    const std::string clut = blockBytes({.length = 14, .x = 32, .y = 3, .w = 4, .h = 5, .data = "cc"});
    const std::string pixels = blockBytes({.length = 15, .x = 64, .y = 256, .w = 6, .h = 7, .data = "ppp"});
    struct Row {
        std::uint32_t flags;
        bool hasClut;
        std::uint32_t tpage;
    };
    const std::vector<Row> rows = {
        {0, true, 17},     {1, true, 145},     {2, false, 273},     {3, false, 401},   {4, false, 17},
        {5, false, 145},   {7, false, 401},    {8, true, 17},       {9, true, 145},    {10, true, 273},
        {11, true, 401},   {15, true, 401},    {16, false, 17},     {0x100, true, 17}, {0x18, true, 17},
        {0xFF, true, 401}, {0xF7, false, 401}, {0x802, false, 273},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.flags);
        writeFile("t.tim", tim(0x10, row.flags, (row.hasClut ? clut : "") + pixels));
        TexturedObject textured({"t.tim"});
        TextureRecord record{};
        read_tex(&textured.object, 0, record);
        EXPECT_EQ(record.pmode, row.flags & 0xFF);
        EXPECT_EQ(record.clut_id, row.hasClut ? 194U : 0U); // 2 + 3 * 64
        EXPECT_EQ(record.clut_size, row.hasClut ? 2U : 0U);
        EXPECT_EQ(record.clut_x, row.hasClut ? 32U : 0U);
        EXPECT_EQ(record.clut_y, row.hasClut ? 3U : 0U);
        EXPECT_EQ(record.clut_w, row.hasClut ? 4U : 0U);
        EXPECT_EQ(record.clut_h, row.hasClut ? 5U : 0U);
        EXPECT_EQ(record.tpage, row.tpage);
        EXPECT_EQ(record.pixel_size, 3U);
        EXPECT_EQ(record.pixel_x, 64U);
        EXPECT_EQ(record.pixel_y, 256U);
        EXPECT_EQ(record.pixel_w, 6U);
        EXPECT_EQ(record.pixel_h, 7U);
    }
}

TEST(ReadTex, MissingTextureEndsWithStatus1) {
    const TestDirectory directory({{"bad.tim", tim(0x20, 2, blockBytes({}))}});
    TexturedObject textured({"none", "bad"});
    TextureRecord record{};
    EXPECT_EXIT(read_tex(&textured.object, 0, record), ExitedWithCode(1),
                Eq("\nCannot Open: \"none\" for m.mat\n"));
    EXPECT_EXIT(read_tex(&textured.object, 1, record), ExitedWithCode(1),
                Eq("\"bad.tim\" is not a TIM file\n"));
}

TEST(OpenTIM, ChecksOneBitOfTheId) {
    const TestDirectory directory;
    struct Row {
        std::uint32_t id;
        bool accepted;
    };
    const std::vector<Row> rows = {
        {0x10, true},  {0x30, true},  {0xFFFFFFFF, true},  {0x12345610, true}, {0, false},
        {0x0F, false}, {0x20, false}, {0xFFFFFFEF, false}, {0x100, false},     {0x1000, false},
        {0x40, false}, {0x41, false}, {0x10000000, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.id);
        writeFile("t.tim", tim(row.id, 2, blockBytes({})));
        const Counters before = counters();
        std::string messages;
        EXPECT_EQ(openedAs("t.tim", messages), row.accepted ? "t.tim+" : "t.tim");
        EXPECT_EQ(messages, row.accepted ? "" : "\"t.tim\" is not a TIM file\n");
        EXPECT_EQ(counters().allocations - before.allocations, counters().releases - before.releases);
    }
}

TEST(OpenTIM, FindsTextures) {
    struct Row {
        std::vector<InputFile> files; // the working directory is rsd/
        const char* name;
        const char* result;
    };
    const std::string bytes = plainTim();
    const std::vector<Row> rows = {
        {{{"rsd/wood.tim", bytes}}, "wood.tim", "wood.tim+"},
        {{{"rsd/wood.tim", bytes}}, "wood", "wood+"},
        {{{"rsd/wood.TIM", bytes}}, "wood", "wood+"},
        {{{"rsd/wood", bytes}}, "wood", "wood+"},
        {{{"rsd/sub/wood.tim", bytes}}, "sub/wood.tim", "sub/wood.tim+"},
        // In another case it exists, so the folders are left out; but it is opened as it is named.
        {{{"rsd/WOOD.TIM", bytes}, {"TIM/Wood.tim", bytes}}, "Wood.tim", "Wood.tim"},
        {{{"rsd/wood.tim", bytes}, {"TIM/WOOD.TIM", bytes}}, "WOOD.TIM", "WOOD.TIM"},
        {{{"rsd/WOOD.TIM", bytes}}, "WOOD", "WOOD+"},
        // The folders, in their order, each with three forms of the name.
        {{{"rsd/x", ""}, {"TIM/WOOD.TIM", bytes}}, "wood", "../TIM/WOOD.TIM+"},
        {{{"rsd/x", ""}, {"TIM/wood.tim", bytes}}, "Wood", "../TIM/wood.tim+"},
        {{{"rsd/x", ""}, {"TIM/Wood.tim", bytes}, {"TIM/WOOD.TIM", bytes}}, "Wood", "../TIM/Wood.tim+"},
        {{{"rsd/x", ""}, {"TIM/WOOD.TIM", bytes}, {"TIM/wood.tim", bytes}}, "Wood", "../TIM/WOOD.TIM+"},
        {{{"rsd/x", ""}, {"tim/Wood.tim", bytes}}, "Wood", "../tim/Wood.tim+"},
        {{{"rsd/x", ""}, {"tim/Wood.tim", bytes}, {"TIM/wood.tim", bytes}}, "Wood", "../TIM/wood.tim+"},
        {{{"rsd/x", ""}, {"tim/WOOD.TIM", bytes}, {"TIM/", ""}}, "wood.tim", "../tim/WOOD.TIM+"},
        {{{"rsd/x", ""}, {"TIM", bytes}, {"tim/wood.tim", bytes}}, "wood", "../tim/wood.tim+"},
        // No other folder, no other extension.
        {{{"rsd/x", ""}, {"Tim/wood.tim", bytes}}, "wood", "wood"},
        {{{"rsd/x", ""}, {"TIM/wood", bytes}}, "wood", "wood"},
        {{{"rsd/x", ""}, {"wood.tim", bytes}}, "wood", "wood"},
        {{{"rsd/x", ""}}, "wood", "wood"},
    };
    for (const Row& row : rows) {
        const TestDirectory directory;
        makeFiles(row.files);
        enter("rsd");
        std::string messages;
        const std::string result = row.result;
        SCOPED_TRACE(row.files[0].name + ", " + row.name);
        EXPECT_EQ(openedAs(row.name, messages), result);
        const std::string missing = std::string("\nCannot Open: \"") + row.name + "\" for m.mat\n";
        EXPECT_EQ(messages, result.back() == '+' ? "" : missing);
    }
}

TEST(ReadTimFiles, FillsARecordPerTexture) {
    const TestDirectory directory({
        {"a.tim", tim(0x10, 8, blockBytes({.y = 480}) + blockBytes({.x = 640}))},
        {"b.tim", tim(0x10, 2, blockBytes({.x = 320, .y = 255}))},
    });
    TexturedObject textured({"a", "b.tim", "a.tim"});
    read_tim_files(&textured.object);
    ASSERT_NE(Texinfo, nullptr);
    EXPECT_EQ(Texinfo[0].clut_id, 30720U);
    EXPECT_EQ(Texinfo[0].tpage, 10U);
    EXPECT_EQ(Texinfo[1].clut_id, 0U);
    EXPECT_EQ(Texinfo[1].tpage, 261U);
    EXPECT_EQ(Texinfo[2].clut_id, 30720U);
    EXPECT_EQ(Texinfo[2].tpage, 10U);
    for (std::uint32_t i = 0; i < 3; ++i) {
        EXPECT_EQ(&texture_of(i), &Texinfo[i]);
    }
    free_textures();
    EXPECT_EQ(Texinfo, nullptr);
}

TEST(ReadTimFiles, CountsTheTableAndGivesTheRestBack) {
    const TestDirectory directory({{"a.tim", plainTim()}, {"b.tim", plainTim()}});
    TexturedObject textured({"a.tim", "b.tim"});
    const Counters before = counters();
    read_tim_files(&textured.object);
    // The table, and for each texture its name, the record of its file and that file's two names.
    EXPECT_EQ(counters(),
              (Counters{before.total + 120 + 2 * (6 + 20 + 6 + 255), before.allocations + 1 + 2 * 4, 2 * 4}));
    free_textures();
    EXPECT_EQ(freeCount, 2 * 4 + 1);
    free_textures();
    EXPECT_EQ(freeCount, 2 * 4 + 1);
}

TEST(ReadTimFiles, OfNoTexturesHasNoTable) {
    const TestDirectory directory;
    TexturedObject textured({});
    read_tim_files(&textured.object);
    EXPECT_EQ(Texinfo, nullptr);
    EXPECT_EQ(counters(), (Counters{0, 0, 0}));
}

TEST(ReadTimFiles, FailsWhenTheTableCannotBeHad) {
    const TestDirectory directory({{"a.tim", plainTim()}});
    TexturedObject textured({"a", "a", "a"});
    allocTotal = 1234;
    allocCount = 56;
    freeCount = 7;
    EXPECT_EXIT(
        {
            failAllocation(1);
            read_tim_files(&textured.object);
        },
        ExitedWithCode(10), Eq("\nAlloc Error: \"TIM\" 3 x 60(+56-7:sum=1234)\n"));
}

TEST(TextureOf, IsAllZeroBeyondTheTable) {
    const TestDirectory directory({{"a.tim", tim(0x10, 2, blockBytes({.length = 12, .x = 640}))}});
    const auto isZero = [](std::uint32_t number) {
        const TextureRecord& record = texture_of(number);
        return record.pmode == 0 && record.clut_id == 0 && record.clut_size == 0 && record.clut_x == 0 &&
               record.clut_y == 0 && record.clut_w == 0 && record.clut_h == 0 && record.tpage == 0 &&
               record.pixel_size == 0 && record.pixel_x == 0 && record.pixel_y == 0 && record.pixel_w == 0 &&
               record.pixel_h == 0;
    };
    EXPECT_TRUE(isZero(0));
    TexturedObject textured({"a", "a"});
    read_tim_files(&textured.object);
    EXPECT_FALSE(isZero(0));
    EXPECT_FALSE(isZero(1));
    EXPECT_TRUE(isZero(2));
    EXPECT_TRUE(isZero(255));
    free_textures();
    EXPECT_TRUE(isZero(0));
    TexturedObject untextured({});
    read_tim_files(&untextured.object);
    EXPECT_TRUE(isZero(0));
    EXPECT_TRUE(isZero(255));
}
