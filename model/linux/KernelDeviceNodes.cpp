// SPDX-License-Identifier: Apache-2.0
#include "model/linux/KernelDeviceNodes.h"

#include <QFileInfo>
#include <QStorageInfo>

namespace {
const QString folder = QStringLiteral("/dev");
} // namespace

bool KernelDeviceNodes::areMadeByKernel()
{
    const QStorageInfo storage(folder);
    return storage.rootPath() == folder && storage.fileSystemType() == "devtmpfs";
}

bool KernelDeviceNodes::has(const QString &name) const
{
    return QFileInfo::exists(folder + u'/' + name);
}
