#include "fuzz/file_tree.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <deque>
#include <utility>

#include <sys/types.h>

// The linker's names for the library's routines and for what stands in for them.
extern "C" {
std::FILE* __real_fopen(const char* path, const char* mode);
int __real_chdir(const char* path);
char* __real_getcwd(char* buffer, std::size_t size);
std::time_t __real_time(std::time_t* result);
std::FILE* __wrap_fopen(const char* path, const char* mode);
int __wrap_chdir(const char* path);
char* __wrap_getcwd(char* buffer, std::size_t size);
std::time_t __wrap_time(std::time_t* result);
}

namespace {

constexpr std::size_t longestName = 255;
constexpr std::size_t longestPath = 4095;

enum class Kind { directory, file, null, zero, full, terminal };

struct Device {
    std::string_view name;
    Kind kind;
};

constexpr std::array<Device, 4> devices = {{
    {"null", Kind::null},     // takes everything, has nothing
    {"zero", Kind::zero},     // has null bytes without end
    {"full", Kind::full},     // takes nothing
    {"ptmx", Kind::terminal}, // takes everything, but cannot be sought
}};

struct Node {
    std::size_t parent; // the root is its own
    std::string name;
    Kind kind;
    std::string content;
    bool breaks;
    bool written;
};

struct Stream {
    std::size_t node;
    std::size_t offset;
    std::FILE* file; // null once closed
};

// Streams stay where they are while more are opened: the library holds their addresses.
struct Tree {
    std::vector<Node> nodes;
    std::deque<Stream> streams;
    std::size_t here = 0;
    Harvest harvest;
};

Tree tree;
bool planted = false;

constexpr std::size_t root = 0;
constexpr std::size_t nothing = static_cast<std::size_t>(-1);

std::size_t addNode(std::size_t parent, std::string_view name, Kind kind) {
    tree.nodes.push_back({.parent = parent,
                          .name = std::string(name),
                          .kind = kind,
                          .content = {},
                          .breaks = false,
                          .written = false});
    return tree.nodes.size() - 1;
}

bool isDirectory(std::size_t node) {
    return tree.nodes[node].kind == Kind::directory;
}

bool isDevice(std::size_t node) {
    return tree.nodes[node].kind != Kind::directory && tree.nodes[node].kind != Kind::file;
}

// The entry `name` of a directory, or nothing.
std::size_t findEntry(std::size_t directory, std::string_view name) {
    if (name.empty() || name == ".")
        return directory;
    if (name == "..")
        return tree.nodes[directory].parent;
    for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
        if (tree.nodes[i].parent == directory && tree.nodes[i].name == name && i != root)
            return i;
    }
    return nothing;
}

// Where a path leads: the directory of its last part, and what is there of that name, if anything.
struct Place {
    std::size_t directory = nothing;
    std::string_view name;
    std::size_t node = nothing;
};

// As the system resolves a path; errno says why there is no place.
Place findPlace(std::string_view path) {
    Place place;
    errno = path.empty() ? ENOENT : ENAMETOOLONG;
    if (path.empty() || path.size() > longestPath)
        return place;
    std::size_t at = path.front() == '/' ? root : tree.here;
    for (;;) {
        const std::size_t slash = std::min(path.find('/'), path.size());
        const std::string_view part = path.substr(0, slash);
        errno = !isDirectory(at) ? ENOTDIR : ENAMETOOLONG;
        if (!isDirectory(at) || part.size() > longestName)
            return {};
        const std::size_t next = findEntry(at, part);
        if (slash == path.size()) {
            errno = ENOENT;
            return {.directory = at, .name = part, .node = next};
        }
        errno = ENOENT;
        if (next == nothing)
            return {};
        at = next;
        path.remove_prefix(slash + 1);
    }
}

// Makes the directories that `path` names; the last of them, or nothing.
std::size_t plantDirectories(std::string_view path) {
    std::size_t at = tree.here;
    while (!path.empty()) {
        const std::size_t slash = std::min(path.find('/'), path.size());
        const std::string_view part = path.substr(0, slash);
        path.remove_prefix(std::min(slash + 1, path.size()));
        const std::size_t next = findEntry(at, part);
        if (part.size() > longestName || (next != nothing && !isDirectory(next)))
            return nothing;
        at = next == nothing ? addNode(at, part, Kind::directory) : next;
    }
    return at;
}

void plantFile(const PlantedFile& file) {
    const std::size_t slash = file.name.rfind('/');
    const std::size_t nameStart = slash == std::string_view::npos ? 0 : slash + 1;
    const std::string_view name = file.name.substr(nameStart);
    const std::size_t directory = plantDirectories(file.name.substr(0, nameStart));
    if (directory == nothing || name.size() > longestName || findEntry(directory, name) != nothing)
        return;
    Node& node = tree.nodes[addNode(directory, name, Kind::file)];
    node.content = file.content;
    node.breaks = file.breaks;
}

ssize_t readFile(const Node& node, Stream& stream, char* buffer, std::size_t size) {
    const std::size_t start = std::min(stream.offset, node.content.size());
    const std::size_t count = node.content.copy(buffer, size, start);
    stream.offset += count;
    if (count == 0 && node.breaks) {
        errno = EIO;
        return -1;
    }
    return static_cast<ssize_t>(count);
}

ssize_t readNode(void* cookie, char* buffer, std::size_t size) {
    auto& stream = *static_cast<Stream*>(cookie);
    const Node& node = tree.nodes[stream.node];
    switch (node.kind) {
    case Kind::file:
        return readFile(node, stream, buffer, size);
    case Kind::zero:
        std::memset(buffer, 0, size);
        return static_cast<ssize_t>(size);
    case Kind::directory:
    case Kind::terminal:
        errno = node.kind == Kind::directory ? EISDIR : EIO;
        return -1;
    default:
        return 0;
    }
}

// A cookie's write function gives 0, and not -1, for a failure.
ssize_t writeNode(void* cookie, const char* buffer, std::size_t size) {
    auto& stream = *static_cast<Stream*>(cookie);
    Node& node = tree.nodes[stream.node];
    if (node.kind == Kind::full) {
        errno = ENOSPC;
        return 0;
    }
    if (node.kind == Kind::file) {
        node.content.resize(std::max(node.content.size(), stream.offset + size));
        std::memcpy(node.content.data() + stream.offset, buffer, size);
    }
    stream.offset += size;
    return static_cast<ssize_t>(size);
}

int seekNode(void* cookie, off64_t* offset, int whence) {
    auto& stream = *static_cast<Stream*>(cookie);
    off64_t base = 0;
    if (whence == SEEK_CUR)
        base = static_cast<off64_t>(stream.offset);
    else if (whence == SEEK_END)
        base = static_cast<off64_t>(tree.nodes[stream.node].content.size());
    if (base + *offset < 0 || tree.nodes[stream.node].kind == Kind::terminal)
        return -1;
    *offset += base;
    stream.offset = static_cast<std::size_t>(*offset);
    return 0;
}

int closeNode(void* cookie) {
    static_cast<Stream*>(cookie)->file = nullptr;
    return 0;
}

void keepOutput(const Node& node) {
    if (node.kind == Kind::file && node.written)
        tree.harvest.outputs.push_back({node.name, node.content});
}

// The node that a path is opened as, made or emptied for writing; nothing, with errno set, when it cannot be.
std::size_t openNode(const char* path, bool writes) {
    const Place place = findPlace(path);
    if (place.directory == nothing)
        return nothing;
    std::size_t node = place.node;
    if (!writes)
        return node;
    if (node == nothing)
        node = addNode(place.directory, place.name, Kind::file);
    if (isDirectory(node)) {
        errno = EISDIR;
        return nothing;
    }
    tree.harvest.wroteToDevice = tree.harvest.wroteToDevice || isDevice(node);
    keepOutput(tree.nodes[node]);
    tree.nodes[node].content.clear();
    tree.nodes[node].written = true;
    return node;
}

// The absolute name of the working directory.
std::string hereName() {
    std::string name;
    for (std::size_t at = tree.here; at != root; at = tree.nodes[at].parent)
        name.insert(0, "/" + tree.nodes[at].name);
    return name.empty() ? "/" : name;
}

} // namespace

void plantTree(std::span<const PlantedFile> files) {
    tree.nodes.clear();
    tree.streams.clear();
    tree.harvest = {};
    addNode(root, "", Kind::directory);
    const std::size_t folder = addNode(root, "dev", Kind::directory);
    for (const Device& device : devices)
        addNode(folder, device.name, device.kind);
    tree.here = addNode(root, startDirectory.substr(1), Kind::directory);
    for (const PlantedFile& file : files)
        plantFile(file);
    planted = true;
}

Harvest fellTree() {
    for (Stream& stream : tree.streams) {
        if (stream.file == nullptr)
            continue;
        tree.harvest.openFiles += isDevice(stream.node) ? 0 : 1;
        static_cast<void>(std::fclose(stream.file));
    }
    for (const Node& node : tree.nodes)
        keepOutput(node);
    planted = false;
    return std::move(tree.harvest);
}

std::FILE* __wrap_fopen(const char* path, const char* mode) {
    // The sources know two modes. With another one a fuzzer writes down the input of a run that has just
    // crashed.
    const std::string_view how = mode;
    if (!planted || (how != "r" && how != "w"))
        return __real_fopen(path, mode);
    const std::size_t node = openNode(path, how == "w");
    if (node == nothing)
        return nullptr;
    tree.streams.push_back({.node = node, .offset = 0, .file = nullptr});
    Stream& stream = tree.streams.back();
    stream.file = fopencookie(&stream, mode,
                              {.read = readNode, .write = writeNode, .seek = seekNode, .close = closeNode});
    return stream.file;
}

int __wrap_chdir(const char* path) {
    if (!planted)
        return __real_chdir(path);
    const std::size_t node = findPlace(path).node;
    if (node == nothing)
        return -1;
    if (!isDirectory(node)) {
        errno = ENOTDIR;
        return -1;
    }
    tree.here = node;
    return 0;
}

char* __wrap_getcwd(char* buffer, std::size_t size) {
    if (!planted)
        return __real_getcwd(buffer, size);
    const std::string name = hereName();
    if (name.size() >= size) {
        errno = ERANGE;
        return nullptr;
    }
    std::memcpy(buffer, name.c_str(), name.size() + 1);
    return buffer;
}

std::time_t __wrap_time(std::time_t* result) {
    if (!planted)
        return __real_time(result);
    if (result != nullptr)
        *result = runTime;
    return runTime;
}
