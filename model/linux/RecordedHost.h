// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/host/HostInformation.h"

class QByteArray;

// The machine that a tree was recorded on, from the files beside the tree: etc/hostname or
// proc/sys/kernel/hostname, and proc/sys/kernel/arch. Without a host name, named after the folder.
namespace RecordedHost {
HostInformation of(const QByteArray &sysfsFolder);
}
