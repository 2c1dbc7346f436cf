// SPDX-License-Identifier: Apache-2.0
#include "display/DisplayLogging.h"

Q_LOGGING_CATEGORY(displayLog, "vandrel.display", QtInfoMsg)
