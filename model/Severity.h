// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

// How bad what looks wrong at an entry is; worse ones are greater.
enum class Severity : quint8 { Note, Warning, Error };
