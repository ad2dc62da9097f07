// Reads a manual in mdoc, as far as the tests need it: its displays and the items of its lists.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// A literal display (.Bd -literal).
struct Display {
    std::string section;            // the subsection or, before the first of these, the section
    std::vector<std::string> lines; // as they are shown
};

// An item of a list.
struct Item {
    std::string section;
    std::string head;               // what stands behind .It, as it is shown but for its macros
    std::vector<std::string> lines; // of the source, up to the next item or the end of the list
};

[[nodiscard]] std::vector<Display> readDisplays(const std::string& page);

[[nodiscard]] std::vector<Item> readItems(const std::string& page);

// The items of one section.
[[nodiscard]] std::vector<Item> itemsOf(const std::string& page, std::string_view section);

// The cells of a table's row: the item's head, split at its macros Ta.
[[nodiscard]] std::vector<std::string> cellsOf(const Item& item);

// The words of `text`, which blanks separate.
[[nodiscard]] std::vector<std::string> wordsOf(const std::string& text);

// A text or a macro's arguments with the escapes replaced by what they show; an unknown escape stays.
[[nodiscard]] std::string unescape(std::string_view text);
