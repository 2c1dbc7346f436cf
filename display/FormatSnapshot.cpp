// SPDX-License-Identifier: Apache-2.0
#include "display/FormatSnapshot.h"

#include "display/PropertyFormatStore.h"

FormatSnapshot::FormatSnapshot()
    : stored_(PropertyFormatStore::all())
    , defaultFormat_(PropertyFormatStore::defaultFormat())
{}

const FormatSnapshot::ByPath &FormatSnapshot::formatsOf(const QStringList &inheritance)
{
    if (stored_.empty())
        return none_;
    const auto known = known_.constFind(inheritance);
    return known != known_.constEnd() ? *known
                                      : *known_.insert(inheritance, readFormatsOf(inheritance));
}

FormatSnapshot::ByPath FormatSnapshot::readFormatsOf(const QStringList &inheritance) const
{
    ByPath formats;
    QString classPath;
    // The root class first: a derived class replaces its formats.
    for (auto name = inheritance.crbegin(); name != inheritance.crend(); ++name) {
        classPath += *name + u':';
        const QString start = classPath + u':';
        for (auto stored = stored_.lower_bound(start);
             stored != stored_.end() && stored->first.startsWith(start); ++stored)
            formats[stored->first.sliced(start.size())] = stored->second;
    }
    return formats;
}
