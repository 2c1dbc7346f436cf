#pragma once

#include <QButtonGroup>
#include <optional>

// The buttons of a container of which one at a time is chosen. The interface file gives each its
// number in the property "tag".
class ButtonMatrix : public QObject
{
    Q_OBJECT
public:
    // All checkable buttons in the container that have a tag.
    explicit ButtonMatrix(QWidget &container);

    std::optional<int> selectedTag() const;
    void selectTag(int tag); // leaves the selection as it is when no button has the tag
    QAbstractButton *cell(int tag) const { return group_.button(tag); } // null when there is none
    void setEnabled(bool isEnabled);

Q_SIGNALS:
    void chosen(); // by the user

private:
    QButtonGroup group_;
};
