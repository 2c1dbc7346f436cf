// SPDX-License-Identifier: Apache-2.0
#include "display/activity/BlockLine.h"

#include <cmath>

QString blockLine(std::span<const std::optional<double>> amounts)
{
    constexpr char16_t lowest = u'▁';
    constexpr int steps = 7; // up to the highest
    std::optional<double> least;
    std::optional<double> greatest;
    for (const auto &amount : amounts) {
        if (!amount)
            continue;
        least = std::min(*amount, least.value_or(*amount));
        greatest = std::max(*amount, greatest.value_or(*amount));
    }
    QString line;
    for (const auto &amount : amounts) {
        if (!amount) {
            line += u' ';
            continue;
        }
        const double share = *greatest > *least ? (*amount - *least) / (*greatest - *least) : 0;
        line += QChar(static_cast<char16_t>(lowest + std::lround(share * steps)));
    }
    return line;
}
