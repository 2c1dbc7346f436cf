#include "model/RegistryService.h"

RegistryService::~RegistryService() = default;
