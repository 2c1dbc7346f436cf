#pragma once

class QComboBox;

// Pop-ups whose items after a marker are generated.
namespace PopUpItem {
inline constexpr int markerTag = -1;

// A separator, after the items there are.
void addMarker(QComboBox &popUp);
void removeItemsAfterMarker(QComboBox &popUp);
} // namespace PopUpItem
