#include "model/ModelLogging.h"

Q_LOGGING_CATEGORY(modelLog, "vandrel.model", QtInfoMsg)
