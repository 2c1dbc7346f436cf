#include "platform/PlatformLogging.h"

Q_LOGGING_CATEGORY(platformLog, "vandrel.platform", QtInfoMsg)
