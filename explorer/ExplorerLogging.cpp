// SPDX-License-Identifier: Apache-2.0
#include "explorer/ExplorerLogging.h"

Q_LOGGING_CATEGORY(explorerLog, "vandrel.explorer", QtInfoMsg)
