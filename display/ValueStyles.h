#pragma once

#include "display/StyledText.h"

// The text attributes that rendered values are made of.
class ValueStyles
{
public:
    static constexpr TextAttributes plain{};
    // Wrapped lines line up after the opening bracket.
    static constexpr TextAttributes fixedPitch{.fixedPitch = true, .headIndent = '<'};
    static constexpr TextAttributes characterWrap{.wrap = TextAttributes::Wrap::Character};
    static constexpr TextAttributes separatorDot{.grayForeground = true,
                                                 .wrap = TextAttributes::Wrap::Character};
};
