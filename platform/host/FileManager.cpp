// SPDX-License-Identifier: Apache-2.0
#include "platform/host/FileManager.h"

#include "platform/host/DesktopServices.h"

void FileManager::reveal(const QString &file)
{
    if (const auto &reveal = DesktopServices::instance().revealFile)
        reveal(file);
}
