// SPDX-License-Identifier: Apache-2.0
#pragma once

class QComboBox;

// Pop-ups with generated items after a marker.
namespace PopUpItem {
inline constexpr int markerTag = -1;

// Appends the marker, a separator.
void addMarker(QComboBox &popUp);
void removeItemsAfterMarker(QComboBox &popUp);
} // namespace PopUpItem
