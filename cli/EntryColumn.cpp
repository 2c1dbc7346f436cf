// SPDX-License-Identifier: Apache-2.0
#include "cli/EntryColumn.h"

#include "cli/ValueText.h"
#include "display/export/JsonWriter.h"
#include "store/filter/PropertyLookup.h"

namespace {
using Fact = EntryFactTexts::Fact;

struct Word
{
    const char *word;
    Fact fact;
};

constexpr Word words[] = {
    {"path", Fact::Path},
    {"name", Fact::Name},
    {"class", Fact::Class},
    {"inheritance", Fact::Inheritance},
    {"bundle", Fact::Bundle},
    {"state", Fact::Service},
    {"device", Fact::Device},
    {"node", Fact::DeviceNode},
    {"kernelPath", Fact::KernelPath},
    {"id", Fact::Identifier},
};
} // namespace

EntryColumn::EntryColumn(const QString &word)
    : word_(word)
{
    for (const Word &its : words) {
        if (word == QLatin1String(its.word))
            fact_ = its.fact;
    }
    const QString key = word.startsWith(u'@') ? word.sliced(1) : word;
    keys_ = key.split(u'/', Qt::SkipEmptyParts);
}

QStringList EntryColumn::factWords()
{
    QStringList all;
    for (const Word &its : words)
        all.append(QLatin1String(its.word));
    return all;
}

bool EntryColumn::needProperties(const QStringList &words)
{
    return std::any_of(words.begin(), words.end(),
                       [](const QString &word) { return !EntryColumn(word).fact_; });
}

QString EntryColumn::text(const TavRegistryEntry &entry, const QString &plane) const
{
    return fact_ ? EntryFactTexts::text(*fact_, entry, plane)
                 : ValueText::shownLines(entry, keys_).join(QLatin1String(", "));
}

void EntryColumn::addMember(JsonWriter &json, const TavRegistryEntry &entry,
                            const QString &plane) const
{
    json.key(word_);
    if (fact_)
        return json.text(EntryFactTexts::text(*fact_, entry, plane));
    RegistryValue made;
    const auto found = keys_.isEmpty()
                           ? PropertyLookup::Values()
                           : PropertyLookup::find(PropertyLookup::tableOf(entry, made), keys_);
    if (found.isEmpty())
        json.null();
    else
        json.value(*found.front());
}
