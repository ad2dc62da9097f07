// The options, in front of the input names and between them.
#pragma once

#include "driver/words.hpp"

#include <cstdint>

namespace vexbind {

/// Parses the options at the front of the words into the settings; the index of the first word that is
/// none. An unknown option ends the run at illegalOption, after the help text; a missing value and a scale
/// factor of zero are raised as ARG_ERR at badArgument.
std::uint32_t option(const WordList& list);

/// Takes the option at `index`, between input names, into the settings. Only "-s", "-sa" and "-t" are known
/// here; any other, and one without its values, is warned about. The words that it takes up.
std::uint32_t option_between(const WordList& list, std::uint32_t index);

/// Makes a relative scale factor the exponent of the objects to come: the power of two that is not below
/// it. A negative one is raised as SCALE_ERR at badScaleFactor.
void set_scale(double factor);

/// Writes the help text to the standard error.
void usage();

} // namespace vexbind
