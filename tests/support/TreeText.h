// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// Removes the surrounding line breaks and the common indentation from a raw string literal; every
// line ends in a line feed.
std::string dedented(const char *text);

// A part of each text, from the first different line on.
std::string firstDifference(const std::string &text, const std::string &expected);
