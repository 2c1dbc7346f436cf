// SPDX-License-Identifier: Apache-2.0
#pragma once

class KeyedUnarchiver;

// Logs what could not be decoded, with the unarchiver's error.
void logUnableToDecode(const char *what, const KeyedUnarchiver &unarchiver);
