// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class QActionGroup;
class QComboBox;
class QMenu;

// The pop-up of the planes. A menu offers them too, with the keys that the pop-up's items name.
class PlaneMenu : public QObject
{
    Q_OBJECT
public:
    // The data of an item of the pop-up.
    enum ItemData { TagRole = Qt::UserRole, KeyEquivalentRole };

    // Both must outlive this. The pop-up has the first plane.
    PlaneMenu(QComboBox &popup, QMenu &menu);

    // Adds the planes that the pop-up does not have from the start.
    void updatePlaneList(const QStringList &planes);
    QString plane() const;                // that is chosen
    void showPlane(const QString &plane); // adds one that is missing

Q_SIGNALS:
    void planeChosen(); // the pop-up shows it already

private:
    void rebuild();
    void showCurrent();

    QComboBox &popup_;
    QMenu &menu_;
    QActionGroup *planes_;
};
