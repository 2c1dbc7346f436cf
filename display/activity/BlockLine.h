// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <optional>
#include <span>

// A line of block characters, each as high as an amount: the least is the lowest block, the
// greatest the highest. A blank for none.
QString blockLine(std::span<const std::optional<double>> amounts);
