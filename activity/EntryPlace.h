// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class TavRegistryEntry;

// How an entry is named once and for all: in the service plane, or else in the first that it is in.
struct EntryPlace
{
    QString name; // with its location
    QString path; // null: none

    static EntryPlace of(TavRegistryEntry &entry);
};
