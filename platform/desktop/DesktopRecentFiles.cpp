// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/DesktopRecentFiles.h"

#include "platform/documents/ReplacementFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

namespace {
constexpr qint64 maxSize = 16 * 1024 * 1024; // of the list, in bytes

const QString bookmark = QStringLiteral("bookmark");
const QString empty =
    QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                   "<xbel version=\"1.0\""
                   " xmlns:bookmark=\"http://www.freedesktop.org/standards/desktop-bookmarks\""
                   " xmlns:mime=\"http://www.freedesktop.org/standards/shared-mime-info\"/>\n");

// The first such element in the parent, made where there is none.
QDomElement childOf(QDomElement parent, const QString &name, const QString &attribute = {},
                    const QString &value = {})
{
    for (QDomElement child = parent.firstChildElement(name); !child.isNull();
         child = child.nextSiblingElement(name)) {
        if (attribute.isEmpty() || child.attribute(attribute) == value)
            return child;
    }
    QDomElement made = parent.ownerDocument().createElement(name);
    if (!attribute.isEmpty())
        made.setAttribute(attribute, value);
    parent.appendChild(made);
    return made;
}

bool read(const QString &file, QDomDocument &document)
{
    QFile list(file);
    if (!list.exists())
        return document.setContent(empty);
    return list.size() <= maxSize && list.open(QIODevice::ReadOnly) &&
           document.setContent(list.readAll()) &&
           document.documentElement().tagName() == QLatin1String("xbel");
}
} // namespace

QString DesktopRecentFiles::defaultList()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/recently-used.xbel");
}

DesktopRecentFiles::DesktopRecentFiles(QString list)
    : list_(std::move(list))
{}

bool DesktopRecentFiles::add(const QString &file, const QString &mimeType, const QDateTime &now)
{
    QDomDocument document;
    if (!read(list_, document))
        return false;
    const QString href =
        QString::fromLatin1(QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath()).toEncoded());
    const QString time = now.toUTC().toString(Qt::ISODate);
    QDomElement entry = childOf(document.documentElement(), bookmark, QStringLiteral("href"), href);
    if (!entry.hasAttribute(QStringLiteral("added")))
        entry.setAttribute(QStringLiteral("added"), time);
    entry.setAttribute(QStringLiteral("modified"), time);
    entry.setAttribute(QStringLiteral("visited"), time);
    const QDomElement metadata =
        childOf(childOf(entry, QStringLiteral("info")), QStringLiteral("metadata"),
                QStringLiteral("owner"), QStringLiteral("http://freedesktop.org"));
    childOf(metadata, QStringLiteral("mime:mime-type"))
        .setAttribute(QStringLiteral("type"), mimeType);
    QDomElement application = childOf(childOf(metadata, QStringLiteral("bookmark:applications")),
                                      QStringLiteral("bookmark:application"),
                                      QStringLiteral("name"), QCoreApplication::applicationName());
    const QString count = QStringLiteral("count");
    application.setAttribute(QStringLiteral("exec"), QStringLiteral("'vandrel %u'"));
    application.setAttribute(QStringLiteral("modified"), time);
    application.setAttribute(count, application.attribute(count).toInt() + 1);

    QDir().mkpath(QFileInfo(list_).path());
    ReplacementFile replacement(list_);
    return replacement.open() && replacement.content().write(document.toByteArray(2)) > 0 &&
           replacement.commit();
}
