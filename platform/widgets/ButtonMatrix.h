// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QButtonGroup>
#include <optional>

// The buttons of a container, one of which is selected. The interface file numbers them with the
// property "tag".
class ButtonMatrix : public QObject
{
    Q_OBJECT
public:
    // Takes all checkable buttons in the container that have a tag.
    explicit ButtonMatrix(QWidget &container);

    std::optional<int> selectedTag() const;
    void selectTag(int tag); // does nothing when no button has the tag
    QAbstractButton *cell(int tag) const { return group_.button(tag); } // null: no such button
    void setEnabled(bool isEnabled);

Q_SIGNALS:
    void chosen(); // by the user

private:
    QButtonGroup group_;
};
