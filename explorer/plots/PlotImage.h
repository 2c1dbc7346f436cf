// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/Plots.h"

class QIODevice;

// Draws plotted lines with their names and amounts as a picture on a light ground.
namespace PlotImage {
enum class Format : quint8 { Png, Svg };

// Between two times of BootClock. False: not written.
bool write(const Plots::Lines &lines, qint64 from, qint64 until, Format format, QIODevice &device);
} // namespace PlotImage
