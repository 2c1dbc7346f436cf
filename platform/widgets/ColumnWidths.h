#pragma once

#include <QString>
#include <vector>

// How wide the columns of a browser are, as the user left them.
class ColumnWidths
{
public:
    static constexpr int least = 60; // pixels
    static constexpr int most = 2000;

    // Reads what was saved under the name, and saves under it from now on.
    void setAutosaveName(const QString &name);

    int of(int column) const;
    void set(int column, int width);
    void save() const;

private:
    QString name_;
    std::vector<int> widths_;
};
