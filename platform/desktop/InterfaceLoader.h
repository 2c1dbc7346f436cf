#pragma once

#include <QHash>
#include <QUiLoader>
#include <functional>

// Builds windows from the interface files that are compiled into the program. A widget's object
// name is the name of its outlet.
class InterfaceLoader : private QUiLoader
{
public:
    // Makes widgets of a class of our own when an interface file asks for them by name.
    template<class WidgetClass>
    void addWidgetClass()
    {
        factories_.insert(QString::fromLatin1(WidgetClass::staticMetaObject.className()),
                          [](QWidget *parent) { return new WidgetClass(parent); });
    }

    // The window of the interface file of this name; it opens no larger than its screen. The files
    // are part of the program, so one that does not load ends it.
    std::unique_ptr<QWidget> load(const QString &name);

    // The widget, action or other object of an outlet's name; one that is missing ends the program.
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
