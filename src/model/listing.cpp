#include "model/listing.hpp"

#include "model/search.hpp"
#include "model/stamp.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/isfile.hpp"

namespace vexbind {

/// Replaces `fileName` by its upper-case or lower-case form when only that exists.
static void settle_case(char*& fileName, const ListedFormat& format) {
    Text candidate = mkFileName(fileName, format.extension, format.extensions);
    if (!isFile(candidate.get()) && find_other_case(candidate.get())) {
        trackedFree(fileName);
        fileName = candidate.release();
    }
}

FileRecord* open_listed(RSD* object, char*& fileName, const ListedFormat& format) {
    settle_case(fileName, format);
    FileRecord* file = fileMatchOpenOrFail(fileName, format.extensions, format.notFound);
    object->version = currentVersion;
    if (get_id(file, format.name) == oldStamp) {
        object->version = oldVersion;
        warn(OLD_VERSION_MSG, fileName, format.name);
    }
    return file;
}

} // namespace vexbind
