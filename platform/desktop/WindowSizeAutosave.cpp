// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/WindowSizeAutosave.h"

#include "platform/desktop/ScreenBounds.h"
#include "platform/preferences/PreferencesStore.h"

#include <QEvent>
#include <QJsonArray>
#include <QWidget>

WindowSizeAutosave::WindowSizeAutosave(QWidget &window, const QString &name)
    : QObject(&window)
    , window_(window)
    , name_(name)
{
    saveTimer_.setSingleShot(true);
    saveTimer_.setInterval(500);
    connect(&saveTimer_, &QTimer::timeout, this, &WindowSizeAutosave::save);
    restore();
    window.installEventFilter(this);
}

// Spontaneous changes come from the user.
bool WindowSizeAutosave::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Resize && event->spontaneous())
        saveTimer_.start();
    return false;
}

void WindowSizeAutosave::save() const
{
    if (window_.isMaximized() || window_.isFullScreen())
        return;
    PreferencesStore::standard().setValue(name_, QJsonArray{window_.width(), window_.height()});
}

// The window's minimum size and the screen limit the saved size.
void WindowSizeAutosave::restore()
{
    const QJsonArray saved = PreferencesStore::standard().list(name_);
    const QSize size(saved.at(0).toInt(), saved.at(1).toInt());
    window_.resize(
        (size.isEmpty() ? window_.size() : size).boundedTo(ScreenBounds::maxSize(window_)));
}
