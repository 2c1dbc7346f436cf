#pragma once

#include "display/PropertyFormatOptions.h"
#include "platform/desktop/ButtonMatrix.h"

#include <QDialog>

class EncodingPopUpButton;
class QAction;
class QCheckBox;
class QComboBox;
class QLabel;
class TavPropertyOutlineItem;

// The controls of the property format panel: they show a format, and say which one they show.
class PropertyFormatPanel : public QObject
{
    Q_OBJECT
public:
    enum ActionTag { SetDefaults, UseShared, ClearContents, ClearSubclasses, ActionCount };

    PropertyFormatPanel();
    ~PropertyFormatPanel() override;

    QDialog &window() const { return *window_; }

    // For the property, or for a whole entry when there is none.
    void showFormat(PropertyFormatOptions options, const TavPropertyOutlineItem *property);
    PropertyFormatOptions format() const;

    void setClasses(const QStringList &classes); // selects the first
    void selectClass(const QString &className);
    QString selectedClass() const;
    void setStatusText(const QString &text);
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
    void showMessage(const TavPropertyOutlineItem *property);
    void selectCells(const PropertyFormatOptions &options);
    void nameTypeCells(bool isNumber);
    void enableCells(const PropertyFormatOptions &options, qint64 numberWidth);

    std::unique_ptr<QDialog> window_;
    QLabel *messageField_ = nullptr;
    QLabel *sharedMessageField_ = nullptr;
    QCheckBox *automaticCheckbox_ = nullptr;
    EncodingPopUpButton *stringEncodingPopUp_ = nullptr;
    QComboBox *classPopUpButton_ = nullptr;
    std::unique_ptr<ButtonMatrix> typeMatrix_;
    std::unique_ptr<ButtonMatrix> baseMatrix_;
    std::unique_ptr<ButtonMatrix> byteOrderMatrix_;
    std::unique_ptr<ButtonMatrix> signMatrix_;
    QAction *actions_[ActionCount] = {};
};
