#include "docs/mdoc.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <sstream>
#include <utility>

static constexpr std::array<std::pair<std::string_view, std::string_view>, 9> escapes = {{
    {"\\&", ""},
    {"\\-", "-"},
    {"\\e", "\\"},
    {"\\(en", "-"},
    {"\\(dq", "\""},
    {"\\(aq", "'"},
    {"\\(ga", "`"},
    {"\\(ha", "^"},
    {"\\(ti", "~"},
}};

std::string unescape(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        std::size_t taken = 0;
        for (const auto& [written, meant] : escapes) {
            if (text.starts_with(written)) {
                shown += meant;
                taken = written.size();
            }
        }
        if (taken == 0) {
            shown += text.front();
            taken = 1;
        }
        text.remove_prefix(taken);
    }
    return shown;
}

// What stands behind the macro at the beginning of `line`, if it is that one.
static bool takeMacro(const std::string& line, std::string_view macro, std::string& rest) {
    if (line != macro && !line.starts_with(std::string(macro) + " ")) {
        return false;
    }
    rest = line.substr(std::min(line.size(), macro.size() + 1));
    return true;
}

// What stands between each `begin` and the next `end`, with what is behind `begin` as its head.
static std::vector<Item> readBlocks(const std::string& page, std::string_view begin, std::string_view end) {
    std::vector<Item> blocks;
    std::istringstream lines(page);
    std::string section;
    std::string rest;
    bool inside = false;
    for (std::string line; std::getline(lines, line);) {
        if (takeMacro(line, ".Sh", rest) || takeMacro(line, ".Ss", rest)) {
            section = rest;
        } else if (takeMacro(line, begin, rest)) {
            blocks.push_back({.section = section, .head = rest, .lines = {}});
            inside = true;
        } else if (takeMacro(line, end, rest)) {
            inside = false;
        } else if (inside) {
            blocks.back().lines.push_back(line);
        }
    }
    return blocks;
}

std::vector<Display> readDisplays(const std::string& page) {
    std::vector<Display> displays;
    for (const Item& block : readBlocks(page, ".Bd", ".Ed")) {
        if (block.head.starts_with("-literal")) {
            Display& display = displays.emplace_back(Display{.section = block.section, .lines = {}});
            std::transform(block.lines.begin(), block.lines.end(), std::back_inserter(display.lines),
                           unescape);
        }
    }
    return displays;
}

std::vector<Item> readItems(const std::string& page) {
    std::vector<Item> items = readBlocks(page, ".It", ".El");
    for (Item& item : items) {
        item.head = unescape(item.head);
    }
    return items;
}

std::vector<Item> itemsOf(const std::string& page, std::string_view section) {
    std::vector<Item> items;
    for (Item& item : readItems(page)) {
        if (item.section == section) {
            items.push_back(std::move(item));
        }
    }
    return items;
}

std::vector<std::string> cellsOf(const Item& item) {
    static constexpr std::string_view between = " Ta ";
    std::vector<std::string> cells;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = item.head.find(between, start);
        cells.push_back(item.head.substr(start, end - start));
        if (end == std::string::npos) {
            return cells;
        }
        start = end + between.size();
    }
}

std::vector<std::string> wordsOf(const std::string& text) {
    std::vector<std::string> words;
    std::istringstream stream(text);
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}
