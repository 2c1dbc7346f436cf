// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/FormatSnapshot.h"
#include "model/RegistryValue.h"

#include <QStringMatcher>
#include <optional>

class TavRegistryEntry;
class TavRegistryProperty;

// Searches numbers, data, booleans and dates for a text, case-insensitive, by what they are shown
// as; and numbers by value, if the text is a number in any base. Renders only what can match. Made
// on the main thread; copies may work on others.
class ShownValueSearch
{
public:
    explicit ShownValueSearch(const QString &query);

    // Whether the entry has such a value. Skips the contents of sets, like other searches.
    bool operator()(const TavRegistryEntry &entry);
    // The byte order of the machine that was captured.
    bool matches(const RegistryValue &value, const PropertyFormatOptions &format,
                 qint32 byteOrder) const;

private:
    bool isIn(const QString &text) const;
    bool matchesAny(std::span<const RegistryValue> values, qint32 byteOrder) const;
    bool matchesInTable(const RegistryValue &table, const FormatSnapshot::ByPath &formats,
                        qint32 byteOrder) const;
    bool matchesInTree(const TavRegistryProperty &tree, const FormatSnapshot::ByPath &formats,
                       qint32 byteOrder) const;
    bool matchesNumber(const RegistryValue &number, const PropertyFormatOptions &format,
                       qint32 byteOrder) const;
    bool matchesData(const RegistryValue &data, const PropertyFormatOptions &format,
                     qint32 byteOrder) const;

    QStringMatcher matcher_;
    FormatSnapshot formats_;
    std::optional<RegistryValue> number_; // that the query is
    // What is shown by the automatic rule:
    QByteArray lower_;           // the query; empty if it is not ASCII
    std::string digits_;         // the query, if a number can be shown with it; else empty
    bool canBeInBytes_ = false;  // in hexadecimal bytes
    bool canBeInOthers_ = false; // in what is not data
    char letter_ = '\0';         // that strings with the query have, in either case; 0: unknown
    bool isInTrue_;
    bool isInFalse_;
    bool isInOther_; // in what is shown for a value of another type
};
