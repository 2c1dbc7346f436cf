// SPDX-License-Identifier: Apache-2.0
#include "checks/ChecksLogging.h"

Q_LOGGING_CATEGORY(checksLog, "vandrel.checks")
