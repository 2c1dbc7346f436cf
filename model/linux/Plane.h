// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

enum class Plane { Service, Bus, Class, Driver, Module, Firmware, Power, Usb, Block, Network };

inline constexpr std::array<const char *, 10> planeNames{
    "DxService",  "DxBus",   "DxClass", "DxDriver", "DxModule",
    "DxFirmware", "DxPower", "DxUsb",   "DxBlock",  "DxNetwork",
};
inline constexpr std::size_t planeCount = planeNames.size();

inline constexpr std::optional<Plane> planeWithName(std::string_view name)
{
    for (std::size_t i = 0; i < planeCount; ++i) {
        if (name == planeNames[i])
            return static_cast<Plane>(i);
    }
    return std::nullopt;
}
