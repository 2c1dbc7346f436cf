// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// Names of the registry that commands rely on.
namespace RegistryNames {
inline const QString servicePlane = QStringLiteral("DxService");
inline const QString driverPlane = QStringLiteral("DxDriver");
inline const QString modulePlane = QStringLiteral("DxModule");

inline const QString busClass = QStringLiteral("DxBus");
inline const QString classClass = QStringLiteral("DxClass");
inline const QString deviceClass = QStringLiteral("DxDevice");
inline const QString bindingClass = QStringLiteral("DxBinding");
inline const QString driverClass = QStringLiteral("DxDriver");
inline const QString moduleClass = QStringLiteral("DxModule");
} // namespace RegistryNames
