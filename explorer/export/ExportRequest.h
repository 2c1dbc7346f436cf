// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/export/CsvExport.h"

// What the user asked to export, and how.
struct ExportRequest
{
    enum class Scope : quint8 { Entry, Subtree, Found, Plane };
    enum class Format : quint8 { Text, Json, Csv };

    Scope scope = Scope::Plane;
    Format format = Format::Text;
    CsvExport::Columns columns = {}; // of a table
    bool isRedacted = false;
};
