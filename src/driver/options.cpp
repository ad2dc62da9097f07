#include "driver/options.hpp"

#include "settings/settings.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/exit.hpp"
#include "utilkit/platform.hpp"
#include "utilkit/scan.hpp"
#include "utilkit/status.hpp"
#include "utilkit/stralloc.hpp"
#include "utilkit/strcase.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <span>

namespace vexbind {

namespace {

/// The words behind an option.
using Values = std::span<char* const>;

struct Option {
    const char* name;
    std::uint32_t values;  // words that follow
    bool betweenNames;     // known between input names too
    void (*apply)(Values); // takes it into the settings
};

} // namespace

static double to_real(const char* word) {
    return std::strtod(word, nullptr);
}

/// A number that does not fit is read with 64 bits and cut, as those in the files are.
static std::int32_t to_integer(const char* word) {
    return static_cast<std::int32_t>(std::strtoll(word, nullptr, 10));
}

static void set_text(char*& setting, const char* word) {
    trackedFree(setting);
    setting = strCopy(word).release();
}

static void set_output(Values values) {
    set_text(Tmdfile, values[0]);
}

static void set_project(Values values) {
    if (Prjfile == nullptr) {
        set_text(Prjfile, values[0]);
    }
}

static void set_relative_scale(Values values) {
    set_scale(to_real(values[0]));
}

static void set_absolute_scale(Values values) {
    scaleFactor = 0;
    scale = to_real(values[0]);
}

static void set_translation(Values values) {
    offsetX = to_integer(values[0]);
    offsetY = to_integer(values[1]);
    offsetZ = to_integer(values[2]);
}

// Names are compared without regard to case.
static constexpr std::array<Option, 11> options = {{
    {.name = "-o", .values = 1, .betweenNames = false, .apply = set_output},
    {.name = "-s", .values = 1, .betweenNames = true, .apply = set_relative_scale},
    {.name = "-sc", .values = 1, .betweenNames = false, .apply = set_relative_scale},
    {.name = "-sa", .values = 1, .betweenNames = true, .apply = set_absolute_scale},
    {.name = "-t", .values = 3, .betweenNames = true, .apply = set_translation},
    {.name = "-id", .values = 1, .betweenNames = false, .apply = set_project},
    {.name = "-v", .values = 0, .betweenNames = false, .apply = [](Values) { Verbose = 1; }},
    {.name = "-a", .values = 0, .betweenNames = false, .apply = [](Values) { arcade = arcadeLayoutA; }},
    {.name = "-b", .values = 0, .betweenNames = false, .apply = [](Values) { arcade = arcadeLayoutB; }},
    {.name = "-help", .values = 0, .betweenNames = false, .apply = [](Values) { usage(); }},
    {.name = "-info", .values = 0, .betweenNames = false, .apply = [](Values) { Dump = dumpDetails; }},
}};

static const Option* find_option(const char* word) {
    const auto* found = std::find_if(options.begin(), options.end(), [word](const Option& each) {
        return equalsIgnoringCase(word, each.name);
    });
    return found == options.end() ? nullptr : found;
}

/// The words behind `index`.
static Values values_behind(const WordList& list, std::uint32_t index) {
    return Values(list.words, list.count).subspan(std::size_t{index} + 1);
}

void set_scale(double factor) {
    if (factor < 0.0) {
        raiseError(badScaleFactor, SCALE_ERR, factor);
    }
    scaleFactor = truncateToInt(std::ceil(decimalLogarithm(factor) / decimalLogarithm(2.0)));
    scale = 0.0; // a relative factor replaces an absolute one
}

/// Ends the run for a value that the option cannot have; between names these factors pass.
static void check_values(const Option& found, const char* word, Values values) {
    if (values.size() < found.values) {
        raiseError(badArgument, ARG_ERR, word, "");
    }
    if (found.apply == set_relative_scale && to_real(values[0]) == 0.0) {
        raiseError(badArgument, ARG_ERR, word, values[0]);
    }
}

std::uint32_t option(const WordList& list) {
    std::uint32_t index = 0;
    while (index < list.count && list.words[index][0] == '-') {
        const char* word = list.words[index];
        const Option* found = find_option(word);
        if (found == nullptr) {
            std::fprintf(stderr, OPTION_ERR, word);
            usage();
            Exit(illegalOption);
        }
        const Values values = values_behind(list, index);
        check_values(*found, word, values);
        found->apply(values);
        index += 1 + found->values;
    }
    return index;
}

std::uint32_t option_between(const WordList& list, std::uint32_t index) {
    const char* word = list.words[index];
    const Option* found = find_option(word);
    const Values values = values_behind(list, index);
    if (found == nullptr || !found->betweenNames || values.size() < found->values) {
        warn(ARG_ERR, word, values.empty() ? "" : values[0]);
        return 1;
    }
    found->apply(values);
    return 1 + found->values;
}

} // namespace vexbind
