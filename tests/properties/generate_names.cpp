// Every way in which a name leads to a file. In the tables "n" stands for the base name, "N" for the same in
// capitals, and what is behind the dot for the extension. The last column has files that are looked for
// later, or not at all, so that they must not be read.
#include "properties/generate.hpp"

#include <array>
#include <string_view>

namespace properties {

namespace {

using Names = std::array<std::string_view, 3>;

struct Form {
    std::string_view written;
    std::string_view disk;
    std::string_view shown;
    Names decoys;
};

// PLY and MAT files: the name as it is, with the extension in small letters and in capitals; else the whole
// name with its extension in capitals or in small letters, which then replaces what was written.
constexpr std::array<Form, 13> modelForms = {{
    {"n.e", "n.e", "n.e", {"N.E", "n.E"}},
    {"n", "n.e", "n", {"N.E", "n.E"}},
    {"n.E", "n.E", "n.E", {"N.E", "n.e"}},
    {"n", "n.E", "n", {}},
    {"N", "N.e", "N", {"N.E", "n.e"}},
    {"n", "n", "n", {"n.E"}},
    {"n.dat", "n.dat", "n.dat", {"N.DAT", "n.e"}},
    {"n", "N.E", "N.E", {"n.E"}},
    {"n.e", "N.E", "N.E", {"n.E"}},
    {"N", "N.E", "N.E", {"n.e"}},
    {"N", "n.e", "n.e", {"n.E"}},
    {"N.E", "n.e", "n.e", {"n.E"}},
    {"n.E", "n.e", "n.e", {"N.e"}},
}};

// RSD files: the same, except that a name without extension means one in small letters.
constexpr std::array<Form, 10> rsdForms = {{
    {"n.e", "n.e", "", {"N.E", "rsd/n.e"}},
    {"n", "n.e", "", {"N.E", "n", "rsd/n.e"}},
    {"n.E", "n.E", "", {"N.E", "n.e"}},
    {"N.e", "N.e", "", {"N.E", "n.e"}},
    {"n.dat", "n.dat", "", {"N.DAT", "n.e"}},
    {"n", "N.E", "", {"RSD/n.e"}},
    {"n.e", "N.E", "", {"rsd/n.e"}},
    {"N", "n.e", "", {"RSD/N.E"}},
    {"N.E", "n.e", "", {"rsd/N.E"}},
    {"n.E", "n.e", "", {"rsd/n.e"}},
}};

// In folders rsd and RSD, for a name that is not found otherwise.
constexpr std::array<Form, 4> rsdFolderForms = {{
    {"n", "n.e", "", {"N.E"}},
    {"n.e", "N.E", "", {}},
    {"N", "n.e", "", {}},
    {"N.E", "n.e", "", {}},
}};

// TIM files beside the RSD file: nothing replaces what was written.
constexpr std::array<Form, 5> textureForms = {{
    {"n.e", "n.e", "n.e", {"N.E", "../TIM/n.e"}},
    {"n", "n.e", "n", {"n.E", "../tim/n.e"}},
    {"n.E", "n.E", "n.E", {"n.e", "../TIM/n.E"}},
    {"n", "n.E", "n", {"N.E"}},
    {"N", "N.E", "N", {"n.e", "../TIM/N.E"}},
}};

// In the folders ../TIM and ../tim, where the folder becomes part of the name.
constexpr std::array<Form, 5> textureFolderForms = {{
    {"n.e", "n.e", "n.e", {"N.E"}},
    {"n", "n.e", "n.e", {"N.E", "n"}},
    {"n", "N.E", "N.E", {}},
    {"N", "n.e", "n.e", {"n.E"}},
    {"N.e", "n.e", "n.e", {}},
}};

constexpr std::array<std::string_view, 2> textureFolders = {"TIM", "tim"};

std::string fill(std::string_view form, const std::string& base, const std::string& extension) {
    const std::size_t dot = form.find('.');
    std::string text = form.front() == 'n' ? base : toUpper(base);
    if (dot == std::string_view::npos)
        return text;
    const std::string_view end = form.substr(dot + 1);
    return text + "." + (end == "e" ? extension : end == "E" ? toUpper(extension) : std::string(end));
}

// Some of the decoys of a form; those in upper folders only if there is one.
void addDecoys(Random& random, const Form& form, const std::string& base, const std::string& extension,
               const std::string& place, Object& object) {
    const std::string up = "../";
    for (const std::string_view decoy : form.decoys) {
        if (decoy.empty() || random.oneIn(2))
            continue;
        const std::size_t slash = decoy.rfind('/');
        std::string folder(slash == std::string_view::npos ? "" : decoy.substr(0, slash));
        const std::string name = fill(decoy.substr(folder.empty() ? 0 : slash + 1), base, extension);
        if (!folder.starts_with(up)) {
            object.decoys.push_back(joinPath(joinPath(place, folder), name));
        } else if (!place.empty()) {
            object.decoys.push_back(joinPath(joinPath(folderOf(place), folder.substr(up.size())), name));
        }
    }
}

// Whether the letter case of the whole name is changed on the way, which holds for its folders too.
bool changesCase(const Form& form) {
    return form.shown == "n.e" ? form.written != "n.e" : form.shown == "N.E" && form.written != "N.E";
}

// Names the files of one object.
class Namer {
  public:
    Namer(Random& from, const std::string& top, Object& of) : random(from), root(top), object(of) {}

    void nameAll() {
        nameRsd();
        folder = folderOf(object.disk);
        const Form& plyForm = random.pick(modelForms);
        object.ply = nearFile(plyForm, object.base + "p", "ply");
        const Form& matForm = random.pick(modelForms);
        object.mat = nearFile(matForm, object.base + "m", "mat");
        for (std::size_t i = 0; i < object.textures.size(); ++i)
            object.textures[i].name = textureFile(object.base + "t" + std::to_string(i));
    }

  private:
    void nameRsd() {
        const bool inFolder = random.oneIn(4);
        const Form& form = inFolder ? random.pick(rsdFolderForms) : random.pick(rsdForms);
        object.word = fill(form.written, object.base, "rsd");
        object.disk = fill(form.disk, object.base, "rsd");
        if (inFolder) {
            const std::string place = random.oneIn(2) ? "rsd" : "RSD";
            object.disk = joinPath(place, object.disk);
            addDecoys(random, form, object.base, "rsd", place, object);
            if (place == "rsd")
                object.decoys.push_back("RSD/" + object.base + ".rsd");
            return;
        }
        addDecoys(random, form, object.base, "rsd", "", object);
        // Only names that are there as they are written can stand behind a folder: its letters would change
        // too.
        const bool asWritten = form.written == form.disk || (form.written == "n" && form.disk == "n.e");
        if (asWritten && !random.oneIn(3))
            moveRsd();
    }

    void moveRsd() {
        constexpr std::array<std::string_view, 4> places = {"m", "a/b", "rsd", "Models"};
        const std::string place(random.oneIn(5) ? "" : random.pick(places));
        object.disk = joinPath(place, object.disk);
        std::erase(object.decoys, object.disk);
        switch (random.below(5)) {
        case 0:
            object.word = joinPath(joinPath(root, place), object.word);
            break;
        case 1:
            object.word = "./" + joinPath(place, object.word);
            break;
        default:
            object.word = joinPath(place, object.word);
            break;
        }
    }

    // A file right in the folder of the object or in one near it.
    FileName nearFile(const Form& form, const std::string& base, const std::string& extension) {
        const FileName name = {fill(form.written, base, extension), fill(form.disk, base, extension),
                               fill(form.shown, base, extension)};
        const auto behind = [&](const std::string& prefix, const std::string& place) {
            addDecoys(random, form, base, extension, place, object);
            return FileName{prefix + name.written, joinPath(place, name.disk), prefix + name.shown};
        };
        const std::size_t choice = random.below(12);
        if (choice < 2)
            return behind("./", folder);
        if (choice < 4 && !folder.empty())
            return behind("../", folderOf(folder));
        if (choice < 6 && !changesCase(form))
            return behind("parts/", joinPath(folder, "parts"));
        if (choice < 7 && !changesCase(form))
            return behind(joinPath(root, folder) + "/", folder);
        return behind("", folder);
    }

    // The upper folders are searched from the folder of the object, which has to lie in the scene's.
    FileName textureFile(const std::string& base) {
        if (folder.empty() || random.oneIn(2)) {
            const Form& form = random.pick(textureForms);
            return nearFile(form, base, "tim");
        }
        const Form& form = random.pick(textureFolderForms);
        const std::string name(random.pick(textureFolders));
        const std::string place = joinPath(folderOf(folder), name);
        addDecoys(random, form, base, "tim", place, object);
        if (name == "TIM")
            object.decoys.push_back(joinPath(folderOf(folder), "tim/" + base + ".tim"));
        return {fill(form.written, base, "tim"), joinPath(place, fill(form.disk, base, "tim")),
                "../" + name + "/" + fill(form.shown, base, "tim")};
    }

    Random& random;
    const std::string& root;
    Object& object;
    std::string folder; // of the RSD file
};

// The name of a file as it lies, from the folder of its object.
std::string fromFolder(const std::string& folder, const std::string& disk) {
    std::string up;
    std::string from = folder;
    while (!from.empty() && !disk.starts_with(from + "/")) {
        from = folderOf(from);
        up += "../";
    }
    return up + (from.empty() ? disk : disk.substr(from.size() + 1));
}

template <typename Rename> void renameFiles(Object& object, Rename rename) {
    rename(object.ply);
    rename(object.mat);
    for (Texture& texture : object.textures)
        rename(texture.name);
}

} // namespace

void nameFiles(Random& random, const std::string& root, Object& object) {
    Namer(random, root, object).nameAll();
}

void nameFilesPlainly(Object& object) {
    object.word = object.disk;
    const std::string folder = folderOf(object.disk);
    renameFiles(object, [&](FileName& name) { name.written = name.shown = fromFolder(folder, name.disk); });
}

void nameFilesAbsolutely(const std::string& root, Object& object) {
    object.word = joinPath(root, object.disk);
    renameFiles(object, [&](FileName& name) { name.written = name.shown = joinPath(root, name.disk); });
}

} // namespace properties
