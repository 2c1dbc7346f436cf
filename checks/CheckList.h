// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "checks/Check.h"

// All checks, in the order in which they are listed.
namespace CheckList {
const std::vector<std::unique_ptr<const Check>> &all();
// Made once; empty for an unknown ID. Any thread.
const CheckDescription &describe(const QString &id);
} // namespace CheckList
