// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCursor>
#include <QGuiApplication>

// Shows a busy cursor while it exists.
class BusyCursor
{
public:
    BusyCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyCursor() { QGuiApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor &) = delete;
    BusyCursor &operator=(const BusyCursor &) = delete;
};
