#include "display/DisplayLogging.h"

Q_LOGGING_CATEGORY(displayLog, "vandrel.display", QtInfoMsg)
