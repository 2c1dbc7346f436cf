// SPDX-License-Identifier: Apache-2.0
#pragma once

class QLineEdit;

// Names a field's clear button, which Qt leaves without a name and tool tip.
void nameClearButton(const QLineEdit &field);
