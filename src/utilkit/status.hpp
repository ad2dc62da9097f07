// Every exit status of the program: the class base of the failure plus the number of its site.
#pragma once

#include <cstdint>

namespace vexbind {

inline constexpr std::int32_t memCode = 10;  // memory: allocation, bad array index
inline constexpr std::int32_t fileCode = 30; // files: open, close, seek, read, write, end of file
inline constexpr std::int32_t libCode = 50;  // library services: working directory, path names
inline constexpr std::int32_t formCode = 70; // input formats: identification, version, contents
inline constexpr std::int32_t synCode = 90;  // syntax of the text inputs

enum Status : std::int32_t {
    normalEnd = 0,
    // Without a class: the driver, and readers that give up on a whole file.
    illegalOption = 1,
    badScaleFactor = 1,
    noOutput = 1,
    noTexture = 1,
    badArgument = 2,
    notAProject = 3,
    plyNotFound = 100,
    matNotFound = 200,

    allocFailed = memCode + 0, // tables, records, lists and names without a site of their own
    fileRecordAllocFailed = memCode + 1,
    strAllocFailed = memCode + 2,
    strCopyFailed = memCode + 3,
    arrayHeaderAllocFailed = memCode + 4,
    fullBlockAllocFailed = memCode + 5,
    lastBlockAllocFailed = memCode + 6,
    badIndex = memCode + 7,

    openFailed = fileCode + 0,
    closeFailed = fileCode + 1,
    seekFailed = fileCode + 2,
    lineReadFailed = fileCode + 3,
    lineAtEnd = fileCode + 4,
    writeFailed = fileCode + 6,
    read2Failed = fileCode + 8,
    read2AtEnd = fileCode + 9,
    read4Failed = fileCode + 10,
    read4AtEnd = fileCode + 11,

    noWorkingDirectory = libCode + 1,
    badPathName = libCode + 2,

    wrongFormat = formCode + 0,
    wrongVersion = formCode + 1,
    badPolygonList = formCode + 2,
    clutAtEnd = formCode + 3,
    clutReadFailed = formCode + 4,
    pixelsAtEnd = formCode + 5,
    pixelsReadFailed = formCode + 6,

    rsdPlySyntax = synCode + 0,
    rsdMatSyntax = synCode + 1,
    rsdNtexSyntax = synCode + 2,
    plyCountSyntax = synCode + 4,
    plyVertexSyntax = synCode + 5,
    plyNormalSyntax = synCode + 6,
    plyPolygonSyntax = synCode + 7,
    matCountSyntax = synCode + 8,
    matLineSyntax = synCode + 9,
    matGradationSyntax = synCode + 10,
    matColourSyntax = synCode + 11,
    matTextureSyntax = synCode + 12,
    matTextureColourSyntax = synCode + 13,
    matTextureGradationSyntax = synCode + 14,
};

} // namespace vexbind
