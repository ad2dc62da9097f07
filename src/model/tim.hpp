// TIM files: where each texture of an object lies in the console's frame buffer.
//
// Only the headers are used; the image data is read over, so that a file shorter than its headers say is
// reported with the position at which it ended.
#pragma once

#include "model/rsd.hpp"
#include "utilkit/fopen.hpp"

#include <cstdint>

namespace vexbind {

/// One texture. Positions, widths and heights are in frame-buffer units: 16-bit words across, rows down.
struct TextureRecord {
    std::uint8_t pmode;      // bits 0-2 pixel mode (4-bit, 8-bit, 16-bit, 24-bit), bit 3 CLUT present
    std::uint32_t clut_id;   // CLUT position code
    std::uint32_t clut_size; // bytes of CLUT data; the CLUT fields stay 0 when the file has no CLUT
    std::uint32_t clut_x;
    std::uint32_t clut_y;
    std::uint32_t clut_w;     // entries
    std::uint32_t clut_h;     // rows
    std::uint32_t tpage;      // texture page code, in the layout that `arcade` selects
    std::uint32_t pixel_size; // bytes of pixel data
    std::uint32_t pixel_x;
    std::uint32_t pixel_y;
    std::uint32_t pixel_w;
    std::uint32_t pixel_h;
};
inline constexpr std::uint32_t countedTexture = 60; // its size in the accounting

extern TextureRecord* Texinfo; // one per texture of the object being converted; null without any

/// Makes Texinfo for the object, in the working directory of its RSD file. The name of a texture that lies in
/// one of the folders of TIM_DIR is replaced by that under which it was found there. A texture that is
/// missing or no TIM file ends the run at noTexture.
void read_tim_files(RSD* object);

/// Texture `number` of the object that Texinfo was made for; all zero when it has no such texture.
const TextureRecord& texture_of(std::uint32_t number);

/// Reads texture `index` of the object into `record`.
void read_tex(RSD* object, std::int32_t index, TextureRecord& record);

/// Opens texture `index` and checks its ID; null after a message.
FileRecord* openTIM(RSD* object, std::int32_t index);

/// Reads the flag word. Returns 1.
std::int32_t get_pmode(FileRecord* file, TextureRecord& record);

/// Reads the CLUT block, warning of a position that the target cannot use. Data that is cut short is raised
/// as EOF_ERR at clutAtEnd or READ_ERR at clutReadFailed.
void get_tex_clut(FileRecord* file, TextureRecord& record);

/// The same for the pixel block; EOF_ERR at pixelsAtEnd, READ_ERR at pixelsReadFailed.
void get_tex_pixel(FileRecord* file, TextureRecord& record);

/// Releases Texinfo.
void free_textures();

} // namespace vexbind
