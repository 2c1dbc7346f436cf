#pragma once

#include <QString>

// Why a document could not be opened or saved, in words for the user.
struct DocumentError
{
    QString domain; // what the code means depends on it
    int code = 0;
    QString description;
    QString reason;
};
