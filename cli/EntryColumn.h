// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/export/EntryFactTexts.h"

#include <QStringList>

class JsonWriter;
class TavRegistryEntry;

// A fact or a property that is printed for entries: "class" is the fact, "@class" the property.
class EntryColumn
{
public:
    explicit EntryColumn(const QString &word);

    static bool needProperties(const QStringList &words);
    static QStringList factWords();

    // Several values have commas between them; empty: none.
    QString text(const TavRegistryEntry &entry, const QString &plane) const;
    // Null if it has none.
    void addMember(JsonWriter &json, const TavRegistryEntry &entry, const QString &plane) const;

private:
    QString word_;
    std::optional<EntryFactTexts::Fact> fact_;
    QStringList keys_; // of a property
};
