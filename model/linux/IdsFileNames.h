// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/DeviceNames.h"
#include "model/linux/IdsFile.h"

#include <QStringList>
#include <optional>

// The names in pci.ids and usb.ids. Each file is read when it is first needed.
class IdsFileNames : public DeviceNameSource
{
public:
    static QStringList standardFolders();
    explicit IdsFileNames(QStringList folders); // the first that has a file decides

    DeviceName nameOf(const QString &modalias) override;

private:
    const IdsFile &file(std::optional<IdsFile> &file, const QString &name) const;

    QStringList folders_;
    std::optional<IdsFile> pci_;
    std::optional<IdsFile> usb_;
};
