// The examples of a document: commands, each with what it prints.
#pragma once

#include <string>
#include <vector>

struct Example {
    std::string command;
    std::string printed; // both streams together; {dir} stands for the directory of the runs
};

// Takes the examples out of a block of lines: a line "$ command" begins one, what follows is printed by
// it. Nothing else stands in front of the first.
void takeExamples(const std::vector<std::string>& block, std::vector<Example>& examples);

// Runs the examples in order, in one fresh directory that holds the samples, with the program on the
// path, and expects each to print what is shown.
void expectExamples(const std::vector<Example>& examples);
