// SPDX-License-Identifier: Apache-2.0
#pragma once

class QString;
class QToolButton;

// A button with its icon beside its text, for the bar of a dock.
QToolButton *barButton(const QString &text, const char *icon, const char *objectName);
