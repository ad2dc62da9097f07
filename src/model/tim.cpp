// Owns Texinfo.
#include "model/tim.hpp"

#include "model/search.hpp"
#include "settings/settings.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/exit.hpp"
#include "utilkit/get4.hpp"
#include "utilkit/isfile.hpp"
#include "utilkit/status.hpp"

#include <cstdio>

namespace vexbind {

static constexpr std::uint32_t timIdBit = 0x10;
static constexpr std::uint32_t clutFlag = 1U << 3;
static constexpr std::uint32_t pixelModeMask = 3;
static constexpr std::uint32_t headerBytes = 12; // of a block, which its length includes

namespace {

/// What stands in front of the data of a CLUT or pixel block.
struct BlockHeader {
    std::uint32_t size; // bytes of data
    std::uint32_t x;
    std::uint32_t y;
    std::uint32_t w;
    std::uint32_t h;
};

} // namespace

TextureRecord* Texinfo = nullptr;
static std::uint32_t textureCount = 0;

void read_tim_files(RSD* object) {
    if (object->ntex == 0) {
        Texinfo = nullptr;
        textureCount = 0;
        return;
    }
    textureCount = static_cast<std::uint32_t>(object->ntex);
    Texinfo = trackedTable<TextureRecord>(textureCount, countedTexture, "TIM");
    for (std::int32_t i = 0; i < object->ntex; ++i) {
        read_tex(object, i, Texinfo[i]);
    }
}

void free_textures() {
    trackedFree(Texinfo);
    Texinfo = nullptr;
    textureCount = 0;
}

const TextureRecord& texture_of(std::uint32_t number) {
    static const TextureRecord none{};
    return number < textureCount ? Texinfo[number] : none;
}

void read_tex(RSD* object, std::int32_t index, TextureRecord& record) {
    FileRecord* file = openTIM(object, index);
    if (file == nullptr) {
        Exit(noTexture);
    }
    get_pmode(file, record);
    // Kept: the whole byte is compared, and a mode below 2 has a CLUT whatever its flag says.
    if ((record.pmode & clutFlag) != 0 || record.pmode < 2) {
        get_tex_clut(file, record);
    }
    get_tex_pixel(file, record);
    fileClose(file);
}

/// Replaces a texture's name by that under which it lies in one of the usual folders, when it is nowhere
/// else.
static void settle_texture(char*& name) {
    const Text plain = mkFileName(name, "tim", TIM_EXT);
    // A name that exists in another letter case stays as it is and is opened as it stands.
    if (isFile(plain.get()) || find_other_case(plain.get())) {
        return;
    }
    Text found = find_in_directories(plain.get(), TIM_DIR);
    if (found) {
        trackedFree(name);
        name = found.release();
    }
}

FileRecord* openTIM(RSD* object, std::int32_t index) {
    char*& name = object->tex[index];
    settle_texture(name);
    FileRecord* file = fileMatchOpen(name, TIM_EXT, "r");
    if (file == nullptr) {
        std::fprintf(stderr, TEXTURE_MSG, name, object->mat);
        std::fflush(stderr);
        return nullptr;
    }
    if ((static_cast<std::uint32_t>(get4Bytes(file)) & timIdBit) == 0) {
        std::fprintf(stderr, FORM_ERR, file->name, "TIM");
        std::fflush(stderr);
        fileClose(file);
        return nullptr;
    }
    return file;
}

std::int32_t get_pmode(FileRecord* file, TextureRecord& record) {
    record.pmode = static_cast<std::uint8_t>(get4Bytes(file));
    return 1;
}

static BlockHeader get_block_header(FileRecord* file) {
    BlockHeader header{};
    // Kept: a length below the header's wraps, and the data then ends with the file.
    header.size = static_cast<std::uint32_t>(get4Bytes(file)) - headerBytes;
    for (std::uint32_t* field : {&header.x, &header.y, &header.w, &header.h}) {
        *field = static_cast<std::uint32_t>(get2Bytes(file));
    }
    return header;
}

/// Reads over the data of a block.
static void skip_data(FileRecord* file, std::uint32_t size, Status atEnd, Status readFailed) {
    if (skipBytes(file, size)) {
        return;
    }
    if (std::feof(file->stream) != 0) {
        raiseError(atEnd, EOF_ERR, file->name, static_cast<long>(file->position));
    } else {
        raiseError(readFailed, READ_ERR, file->name, static_cast<long>(file->position));
    }
}

static bool clut_accepted(const TextureRecord& record) {
    const std::uint32_t lastRow = arcade == homeLayout ? 511 : 1023;
    return record.clut_x <= 1023 && record.clut_y <= lastRow && record.clut_x % 16 == 0;
}

void get_tex_clut(FileRecord* file, TextureRecord& record) {
    const BlockHeader header = get_block_header(file);
    record.clut_size = header.size;
    record.clut_x = header.x;
    record.clut_y = header.y;
    record.clut_w = header.w;
    record.clut_h = header.h;
    record.clut_id = (record.clut_x >> 4 & 0x3F) + record.clut_y * 64;
    if (!clut_accepted(record)) {
        warn(CLUT_MSG, static_cast<std::int32_t>(record.clut_x), static_cast<std::int32_t>(record.clut_y));
        std::fputs(record.clut_x % 16 != 0 ? CLUT_X_MSG : "", stderr);
        std::fputc('\n', stderr);
    }
    skip_data(file, record.clut_size, clutAtEnd, clutReadFailed);
}

/// The page code of an image at x, y.
static std::uint32_t page_code(std::uint32_t x, std::uint32_t y, std::uint32_t pmode) {
    if (arcade == arcadeLayoutA) {
        return (x >> 6 & 0x1F) + (y >> 3 & 0x60) + (pmode & pixelModeMask) * 0x200;
    }
    const std::uint32_t code = (x >> 6 & 0xF) + (y >> 4 & 0x10) + (pmode & pixelModeMask) * 0x80;
    return arcade == arcadeLayoutB ? code + (y & 0x200) * 4 : code;
}

static bool image_accepted(std::uint32_t x, std::uint32_t y) {
    switch (arcade) {
    case homeLayout:
        return x <= 1023 && y <= 511;
    case arcadeLayoutA:
        return x <= 2047 && y <= 1023;
    case arcadeLayoutB:
        return x <= 1023 && y <= 1023;
    default:
        return true;
    }
}

void get_tex_pixel(FileRecord* file, TextureRecord& record) {
    const BlockHeader header = get_block_header(file);
    record.pixel_size = header.size;
    record.pixel_x = header.x;
    record.pixel_y = header.y;
    record.pixel_w = header.w;
    record.pixel_h = header.h;
    record.tpage = page_code(record.pixel_x, record.pixel_y, record.pmode);
    if (!image_accepted(record.pixel_x, record.pixel_y)) {
        warn(PIXEL_MSG, static_cast<std::int32_t>(record.pixel_x), static_cast<std::int32_t>(record.pixel_y));
    }
    skip_data(file, record.pixel_size, pixelsAtEnd, pixelsReadFailed);
}

} // namespace vexbind
