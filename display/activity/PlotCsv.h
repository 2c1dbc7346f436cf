// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/Plots.h"

class QIODevice;

// Writes plotted values as CSV: a line for each time that a value was read, with its rate per
// second. Empty: it could not be read.
namespace PlotCsv {
bool write(const Plots &plots, QIODevice &device); // false: not written
} // namespace PlotCsv
