#include "store/StoreLogging.h"

Q_LOGGING_CATEGORY(storeLog, "vandrel.store", QtInfoMsg)
