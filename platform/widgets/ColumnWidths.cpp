#include "platform/widgets/ColumnWidths.h"

#include "platform/preferences/PreferencesStore.h"

namespace {
constexpr int usual = 210;
constexpr int mostKept = 100; // of a file that somebody else may have written
} // namespace

void ColumnWidths::setAutosaveName(const QString &name)
{
    name_ = name;
    widths_.clear();
    for (const auto &width : PreferencesStore::standard().list(name)) {
        if (widths_.size() < mostKept)
            widths_.push_back(std::clamp(width.toInt(usual), least, most));
    }
}

int ColumnWidths::of(int column) const
{
    const auto index = static_cast<std::size_t>(column);
    return index < widths_.size() ? widths_[index] : usual;
}

void ColumnWidths::set(int column, int width)
{
    const auto index = static_cast<std::size_t>(column);
    if (widths_.size() <= index)
        widths_.resize(index + 1, usual);
    widths_[index] = std::clamp(width, least, most);
}

void ColumnWidths::save() const
{
    if (name_.isNull())
        return;
    QJsonArray widths;
    for (std::size_t i = 0; i < widths_.size() && i < mostKept; ++i)
        widths.append(widths_[i]);
    PreferencesStore::standard().setValue(name_, widths);
}
