#pragma once

#include <string>

// A tree in a raw string literal, without the line breaks around it and the indentation that all
// its lines share; every line ends in a line feed.
std::string dedented(const char *text);
