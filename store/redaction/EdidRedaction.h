// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QStringList>

// The serial numbers in a monitor's description (EDID): a number and texts.
namespace EdidRedaction {
QStringList serialTexts(const QByteArray &edid);
// The same description without them, with another serial number and valid checksums. Other bytes
// are returned as they are.
QByteArray cleaned(QByteArray edid, quint32 serialNumber = 0);
} // namespace EdidRedaction
