// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ColumnWidths.h"

#include "platform/preferences/PreferencesStore.h"

namespace {
constexpr int defaultWidth = 210;
constexpr int maxColumns = 100; // read from a file that may be hand-edited
} // namespace

void ColumnWidths::setAutosaveName(const QString &name)
{
    name_ = name;
    widths_.clear();
    for (const auto &width : PreferencesStore::standard().list(name)) {
        if (widths_.size() < maxColumns)
            widths_.push_back(std::clamp(width.toInt(defaultWidth), minWidth, maxWidth));
    }
}

int ColumnWidths::of(int column) const
{
    const auto index = static_cast<std::size_t>(column);
    return index < widths_.size() ? widths_[index] : defaultWidth;
}

void ColumnWidths::set(int column, int width)
{
    const auto index = static_cast<std::size_t>(column);
    if (widths_.size() <= index)
        widths_.resize(index + 1, defaultWidth);
    widths_[index] = std::clamp(width, minWidth, maxWidth);
}

void ColumnWidths::save() const
{
    if (name_.isNull())
        return;
    QJsonArray widths;
    for (std::size_t i = 0; i < widths_.size() && i < maxColumns; ++i)
        widths.append(widths_[i]);
    PreferencesStore::standard().setValue(name_, widths);
}
