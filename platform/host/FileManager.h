// SPDX-License-Identifier: Apache-2.0
#pragma once

class QString;

// The desktop's file manager.
namespace FileManager {
void reveal(const QString &file); // in its folder, selected
} // namespace FileManager
