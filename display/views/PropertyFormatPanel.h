// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/PropertyFormatOptions.h"
#include "platform/widgets/ButtonMatrix.h"

#include <QDialog>

class EncodingPopUpButton;
class PopUpButton;
class QAction;
class QCheckBox;
class QLabel;
class TavPropertyOutlineItem;

// The controls of the property format panel: they show a format and report the user's choices.
class PropertyFormatPanel : public QObject
{
    Q_OBJECT
public:
    enum ActionTag { SetDefaults, UseShared, ClearContents, ClearSubclasses, ActionCount };

    PropertyFormatPanel();
    ~PropertyFormatPanel() override;

    QDialog &window() const { return *window_; }

    void setMessage(const QString &text); // above the controls
    // Notes that the format is for another property than the user may think; null: no note.
    void setTargetNote(const QString &text);
    // Titles the panel for the property, or for a whole entry when null.
    void showFormat(PropertyFormatOptions options, const TavPropertyOutlineItem *property);
    PropertyFormatOptions format() const;

    void setClasses(const QStringList &classes); // selects the first
    void selectClass(const QString &className);
    QString selectedClass() const;
    void setStatusText(const QString &text);
    bool isChoosing() const; // whether the user is choosing in a pop-up
    void commitChoices();
    QAction *action(ActionTag tag) const { return actions_[tag]; }

Q_SIGNALS:
    // By the user.
    void optionChanged();
    void classChanged();
    void actionChosen(PropertyFormatPanel::ActionTag tag);
    void visibilityChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void connectOutlets();
    void connectActions();
    void selectCells(const PropertyFormatOptions &options);
    void nameTypeCells(bool isNumber);
    void enableCells(const PropertyFormatOptions &options, qint64 numberWidth);

    std::unique_ptr<QDialog> window_;
    QLabel *messageField_ = nullptr;
    QLabel *targetNoteField_ = nullptr;
    QLabel *sharedMessageField_ = nullptr;
    QCheckBox *automaticCheckbox_ = nullptr;
    EncodingPopUpButton *stringEncodingPopUp_ = nullptr;
    PopUpButton *classPopUpButton_ = nullptr;
    std::unique_ptr<ButtonMatrix> typeMatrix_;
    std::unique_ptr<ButtonMatrix> baseMatrix_;
    std::unique_ptr<ButtonMatrix> byteOrderMatrix_;
    std::unique_ptr<ButtonMatrix> signMatrix_;
    QAction *actions_[ActionCount] = {};
};
