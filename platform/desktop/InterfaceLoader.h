// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <QUiLoader>
#include <functional>

// Builds windows from the interface files in the program. A widget's object name is the name of its
// outlet.
class InterfaceLoader : private QUiLoader
{
public:
    // Creates widgets of a custom class for interface files that name it.
    template<class WidgetClass>
    void addWidgetClass()
    {
        factories_.insert(QString::fromLatin1(WidgetClass::staticMetaObject.className()),
                          [](QWidget *parent) { return new WidgetClass(parent); });
    }

    // The window of the named interface file, opened no larger than its screen. A file that does
    // not load is a fault of the program and ends it.
    std::unique_ptr<QWidget> load(const QString &name);

    // The widget, action or other object with this outlet name; a missing one ends the program.
    template<class Outlet>
    static Outlet *outlet(const QObject &root, const char *name)
    {
        auto *object = root.findChild<Outlet *>(QString::fromLatin1(name));
        if (!object)
            reportMissing(root, name);
        return object;
    }

private:
    QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override;
    [[noreturn]] static void reportMissing(const QObject &root, const char *name);

    QHash<QString, std::function<QWidget *(QWidget *)>> factories_;
};
