#include "explorer/ExplorerLogging.h"

Q_LOGGING_CATEGORY(explorerLog, "vandrel.explorer", QtInfoMsg)
