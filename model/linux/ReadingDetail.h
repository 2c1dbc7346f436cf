// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

// How much a reading of a tree takes in. Structure: all objects with their names, links, states and
// IDs, but of the attributes only those that decide on these.
enum class ReadingDetail : quint8 { Everything, Structure };
