// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/PropertyFormatOptions.h"

#include <QHash>
#include <QStringList>
#include <map>

// The user's formats as they were when this was made, on the main thread. Copies may be asked on
// other threads.
class FormatSnapshot
{
public:
    using ByPath = QHash<QString, PropertyFormatOptions>;

    FormatSnapshot();

    // For properties without a stored format.
    const PropertyFormatOptions &defaultFormat() const { return defaultFormat_; }
    // What is stored for entries of these classes, most derived first, by property path. A format
    // also applies to the properties below its own, unless they have another.
    const ByPath &formatsOf(const QStringList &inheritance);

private:
    ByPath readFormatsOf(const QStringList &inheritance) const;

    std::map<QString, PropertyFormatOptions> stored_; // by the keys of PropertyFormatStore
    PropertyFormatOptions defaultFormat_;
    QHash<QStringList, ByPath> known_;
    ByPath none_;
};
