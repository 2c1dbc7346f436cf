// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// What is wrong with the text of a filter expression, and where: length is 0 for a text that is
// empty.
struct FilterError
{
    QString message;
    qsizetype position;
    qsizetype length;
};
