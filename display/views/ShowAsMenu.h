// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/PropertyFormatOptions.h"
#include "model/TavRegistryProperty.h"

#include <QMenu>

class TavPropertyOutlineItem;

// The usual formats of one number or data value, for the class of its entry.
class ShowAsMenu : public QMenu
{
    Q_OBJECT
public:
    ShowAsMenu(TavPropertyOutlineItem &item, QWidget *parent);
    static bool isFor(const TavRegistryProperty &item);

Q_SIGNALS:
    void formatChosen(const PropertyFormatOptions &options);
    void resetChosen();

private:
    void addFormat(const QString &title, const PropertyFormatOptions &options);
    PropertyFormatOptions integers(qint64 base, qint64 signedness = 0) const;
    PropertyFormatOptions characters() const;

    PropertyRef keptItem_;
    PropertyFormatOptions current_;
};
