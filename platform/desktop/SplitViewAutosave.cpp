// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/SplitViewAutosave.h"

#include "platform/preferences/PreferencesStore.h"

#include <QJsonArray>
#include <QSplitter>

SplitViewAutosave::SplitViewAutosave(QSplitter &splitView)
    : splitView_(splitView)
{
    saveTimer_.setSingleShot(true);
    saveTimer_.setInterval(500);
    connect(&saveTimer_, &QTimer::timeout, this, &SplitViewAutosave::save);
    connect(&splitView, &QSplitter::splitterMoved, &saveTimer_, qOverload<>(&QTimer::start));
}

SplitViewAutosave::~SplitViewAutosave()
{
    if (saveTimer_.isActive())
        save();
}

bool SplitViewAutosave::arrange(Qt::Orientation panes, const QString &name)
{
    if (saveTimer_.isActive())
        save();
    name_ = name;
    splitView_.setOrientation(panes);
    return restore();
}

void SplitViewAutosave::save()
{
    saveTimer_.stop();
    QJsonArray sizes;
    for (int size : splitView_.sizes())
        sizes.append(size);
    PreferencesStore::standard().setValue(name_, sizes);
}

// The saved sizes may come from a window of another size or a hand-edited file.
bool SplitViewAutosave::restore()
{
    QList<int> sizes;
    for (const auto &size : PreferencesStore::standard().list(name_))
        sizes.append(size.toInt());
    const bool isUsable = sizes.size() == splitView_.count() &&
                          std::all_of(sizes.begin(), sizes.end(),
                                      [](int size) { return size > 0 && size <= 100'000; });
    if (isUsable)
        splitView_.setSizes(sizes);
    return isUsable;
}
