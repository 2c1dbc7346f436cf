// SPDX-License-Identifier: Apache-2.0
#include "display/activity/EventWords.h"

#include <QDateTime>

using EventKind = RegistryEvent::Kind;

namespace {
QString lastComponent(const QString &path)
{
    return path.mid(path.lastIndexOf(u'/') + 1);
}
} // namespace

QString EventWords::word(EventKind kind)
{
    switch (kind) {
    case EventKind::Appeared:
        return tr("appeared");
    case EventKind::Gone:
        return tr("gone");
    case EventKind::Bound:
        return tr("bound");
    case EventKind::Unbound:
        return tr("unbound");
    case EventKind::Changed:
        return tr("changed");
    case EventKind::Moved:
        return tr("moved");
    case EventKind::Renamed:
        return tr("renamed");
    case EventKind::Busy:
        return tr("registry busy");
    case EventKind::Idle:
        return tr("registry quiet");
    case EventKind::Sleep:
        return tr("sleep");
    case EventKind::Wake:
        return tr("wake");
    case EventKind::Lost:
        return tr("messages lost");
    }
    return {};
}

QLatin1String EventWords::name(EventKind kind)
{
    static constexpr const char *names[] = {"appeared", "gone",  "bound",   "unbound",
                                            "changed",  "moved", "renamed", "busy",
                                            "quiet",    "sleep", "wake",    "lost"};
    return QLatin1String(names[static_cast<std::size_t>(kind)]);
}

QString EventWords::time(const RegistryEvent &event)
{
    return QDateTime::fromMSecsSinceEpoch(event.time).toString(QStringLiteral("hh:mm:ss.zzz"));
}

QString EventWords::detail(const LogRow &row)
{
    switch (row.event.kind) {
    case EventKind::Renamed:
        return tr("was %1").arg(lastComponent(row.event.oldKernelPath));
    case EventKind::Moved:
        return tr("was at %1").arg(row.event.oldKernelPath);
    case EventKind::Lost:
        return row.event.lost == 0   ? tr("an unknown number")
               : row.event.lost == 1 ? tr("at most 1")
                                     : tr("at most %1").arg(row.event.lost);
    default:
        return {};
    }
}

QString EventWords::change(const LogChange &change)
{
    if (change.before.isNull())
        return tr("%1: new, %2").arg(change.key, change.after);
    if (change.after.isNull())
        return tr("%1: gone, was %2").arg(change.key, change.before);
    return QStringLiteral("%1: %2 → %3").arg(change.key, change.before, change.after);
}

QString EventWords::changes(const LogRow &row)
{
    QStringList texts;
    if (const QString text = detail(row); !text.isNull())
        texts.append(text);
    for (const LogChange &its : row.changes)
        texts.append(change(its));
    return texts.join(QLatin1String(", "));
}

QString EventWords::path(const LogRow &row)
{
    return row.path.isEmpty() ? row.event.kernelPath : row.path;
}
