// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/InterfaceLoader.h"

#include "platform/desktop/ScreenBounds.h"

#include <QFile>
#include <QWidget>

std::unique_ptr<QWidget> InterfaceLoader::load(const QString &name)
{
    QFile file(QStringLiteral(":/interface/%1.ui").arg(name));
    std::unique_ptr<QWidget> root;
    if (file.open(QIODevice::ReadOnly))
        root.reset(QUiLoader::load(&file));
    if (!root)
        qFatal("Interface file %s: %s", qUtf8Printable(file.fileName()),
               qUtf8Printable(file.isOpen() ? errorString() : file.errorString()));
    new ScreenBounds(*root);
    return root;
}

QWidget *InterfaceLoader::createWidget(const QString &className, QWidget *parent,
                                       const QString &name)
{
    const auto factory = factories_.constFind(className);
    if (factory == factories_.constEnd())
        return QUiLoader::createWidget(className, parent, name);
    QWidget *widget = (*factory)(parent);
    widget->setObjectName(name);
    return widget;
}

void InterfaceLoader::reportMissing(const QObject &root, const char *name)
{
    qFatal("The interface file of %s has no outlet %s", qUtf8Printable(root.objectName()), name);
}
