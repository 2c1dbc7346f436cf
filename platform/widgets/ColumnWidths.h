// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <vector>

// The widths of a browser's columns, as the user set them.
class ColumnWidths
{
public:
    static constexpr int minWidth = 60; // pixels
    static constexpr int maxWidth = 2000;

    // Reads the saved widths, and saves changes under this name.
    void setAutosaveName(const QString &name);

    int of(int column) const;
    void set(int column, int width);
    void save() const;

private:
    QString name_;
    std::vector<int> widths_;
};
