#pragma once

#include <string>

// A tree in a raw string literal, without the line breaks around it and the indentation that all
// its lines share; every line ends in a line feed.
std::string dedented(const char *text);

// Some of each text from the first line on in which they differ.
std::string firstDifference(const std::string &text, const std::string &expected);
