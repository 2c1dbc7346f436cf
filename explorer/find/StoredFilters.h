// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>
#include <vector>

// The filter expressions that the user's preferences hold.
namespace StoredFilters {
struct Saved
{
    QString name;
    QString expression;
};

QStringList recent(); // the latest first, at most 20
void noteUsed(const QString &expression);

std::vector<Saved> saved();                                // by name
void save(const QString &name, const QString &expression); // replaces one with the name
void remove(const QString &name);
} // namespace StoredFilters
