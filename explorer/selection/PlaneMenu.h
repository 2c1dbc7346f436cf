#pragma once

#include <QObject>

class QActionGroup;
class QComboBox;
class QMenu;

// Offers the planes of a pop-up in a menu too, with the keys that the pop-up's items name.
class PlaneMenu : public QObject
{
    Q_OBJECT
public:
    // What an item of the pop-up carries.
    enum ItemData { TagRole = Qt::UserRole, KeyEquivalentRole };

    PlaneMenu(QComboBox &popup, QMenu &menu);

Q_SIGNALS:
    void planeChosen(); // the pop-up shows it already

private:
    void rebuild();
    void showCurrent();

    QComboBox &popup_;
    QMenu &menu_;
    QActionGroup *planes_;
};
