// SPDX-License-Identifier: Apache-2.0
#include "model/ModelLogging.h"

Q_LOGGING_CATEGORY(modelLog, "vandrel.model", QtInfoMsg)
