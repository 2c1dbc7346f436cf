// SPDX-License-Identifier: Apache-2.0
#include "platform/PlatformLogging.h"

Q_LOGGING_CATEGORY(platformLog, "vandrel.platform", QtInfoMsg)
