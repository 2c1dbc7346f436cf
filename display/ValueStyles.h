// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/StyledText.h"

// The text attributes of rendered values.
class ValueStyles
{
public:
    static constexpr TextAttributes plain{};
    static constexpr TextAttributes link{.link = true};
    // Wrapped lines align after the opening bracket.
    static constexpr TextAttributes fixedPitch{.fixedPitch = true, .headIndent = '<'};
    static constexpr TextAttributes characterWrap{.wrap = TextAttributes::Wrap::Character};
    static constexpr TextAttributes separatorDot{.grayForeground = true,
                                                 .wrap = TextAttributes::Wrap::Character};
};
