// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(checksLog)
