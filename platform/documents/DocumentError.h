// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// Why a document could not be opened or saved, as text for the user.
struct DocumentError
{
    QString domain; // defines the meaning of the code
    int code = 0;
    QString description;
    QString reason;
};
