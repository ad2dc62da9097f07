#include "utilkit/fopen.hpp"

#include "utilkit/errors.hpp"
#include "utilkit/getfull0.hpp"
#include "utilkit/put4.hpp"
#include "utilkit/status.hpp"
#include "utilkit/stralloc.hpp"

#include <cstdlib>
#include <string>

namespace vexbind {

/// Opens the stream into a cleared record; false when it does not open.
static bool openStream(const char* name, const char* mode, FileRecord* record) {
    *record = FileRecord{};
    record->stream = std::fopen(name, mode);
    record->writes = mode[0] == 'w';
    return record->stream != nullptr;
}

FileRecord* fileOpen(const char* name, const char* mode) {
    countAllocation(countedFileRecord);
    auto* record = static_cast<FileRecord*>(std::malloc(sizeof(FileRecord)));
    if (record == nullptr) {
        raiseAllocError(fileRecordAllocFailed, "fileOpen", 1, countedFileRecord);
        return nullptr;
    }
    if (!openStream(name, mode, record)) {
        trackedFree(record); // Kept: the record's bytes stay in allocTotal.
        raiseError(openFailed, OPEN_ERR, name);
        return nullptr;
    }
    record->name = strCopy(name).release();
    record->fullPath = getFullPath(name).release();
    return record;
}

FileRecord* fileOpen0(const char* name, const char* mode, FileRecord* record) {
    if (!openStream(name, mode, record)) {
        raiseError(openFailed, OPEN_ERR, name);
        return nullptr;
    }
    return record;
}

static void closeStream(FileRecord* record, const char* name) {
    if (record->stream != nullptr) {
        writePendingWords();
        const bool lostBytes = record->writes && std::ferror(record->stream) != 0;
        if (std::fclose(record->stream) != 0 || lostBytes) {
            raiseError(closeFailed, CLOSE_ERR, name);
        }
        record->stream = nullptr;
    }
    freeTextBlock(record->text);
    trackedFree(record->name);
    record->name = nullptr;
    trackedFree(record->fullPath);
    record->fullPath = nullptr;
}

void fileClose(FileRecord* record) {
    if (record != nullptr) {
        closeStream(record, record->name);
        trackedFree(record);
    }
}

void fileClose0(FileRecord* record) {
    if (record != nullptr) {
        closeStream(record, "unknown"); // Kept: these records carry no name.
    }
}

FileRecord* fileMatchOpen(const char* name, ExtensionList extensions, const char* mode) {
    pushIgnore(OPEN_ERR);
    FileRecord* record = fileOpen(name, mode);
    std::string candidate;
    for (std::size_t i = 0; record == nullptr && i < extensions.size(); ++i) {
        record = fileOpen(mkFileName0(name, extensions[i], extensions, candidate), mode);
    }
    popIgnore();
    return record;
}

FileRecord* fileMatchOpen0(const char* name, ExtensionList extensions, const char* mode, FileRecord* record) {
    pushIgnore(OPEN_ERR);
    FileRecord* opened = fileOpen0(name, mode, record);
    if (opened == nullptr) {
        // Kept: only the first extension is tried here.
        std::string candidate;
        opened = fileOpen0(mkFileName0(name, extensions[0], extensions, candidate), mode, record);
    }
    popIgnore();
    return opened;
}

FileRecord* fileMatchOpenOrFail(const char* name, ExtensionList extensions, std::int32_t status) {
    FileRecord* record = fileMatchOpen(name, extensions, "r");
    if (record == nullptr) {
        raiseError(status, OPEN_ERR, name);
    }
    return record;
}

std::int32_t fileSeek(FileRecord* record, std::int32_t offset) {
    writePendingWords();
    if (std::ferror(record->stream) != 0 || std::fseek(record->stream, offset, SEEK_SET) != 0) {
        raiseError(seekFailed, SEEK_ERR, record->name, static_cast<long>(offset));
        return 0;
    }
    record->position = offset;
    return 1;
}

} // namespace vexbind
