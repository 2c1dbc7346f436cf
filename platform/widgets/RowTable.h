// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

class QTableView;

// Makes a table look like a list of rows: no grid, whole rows are selected, Tab leads out of it.
// Column widths are in characters; the last column takes the rest.
void makeRowTable(QTableView &table, std::span<const int> widths);
