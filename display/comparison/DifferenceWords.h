// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "compare/EntryDifference.h"

#include <QCoreApplication>
#include <span>

// Words and signs for what happened to an entry.
class DifferenceWords
{
    Q_DECLARE_TR_FUNCTIONS(DifferenceWords)
public:
    // In the order of a summary, without Same.
    static std::span<const DifferenceKind> kinds();
    static QChar sign(DifferenceKind kind);
    static QString word(DifferenceKind kind);
    static QString factTitle(FactDifference fact);

    // Never translated: "added", "driver".
    static QString identifier(DifferenceKind kind);
    static QString factIdentifier(FactDifference fact);
};
