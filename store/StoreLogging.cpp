// SPDX-License-Identifier: Apache-2.0
#include "store/StoreLogging.h"

Q_LOGGING_CATEGORY(storeLog, "vandrel.store", QtInfoMsg)
