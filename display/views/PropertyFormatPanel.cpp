// SPDX-License-Identifier: Apache-2.0
#include "display/views/PropertyFormatPanel.h"

#include "display/TavPropertyOutlineItem.h"
#include "display/views/EncodingPopUpButton.h"
#include "platform/desktop/FloatingPanel.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/widgets/CloseKeys.h"

#include <QAction>
#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

namespace {
using Type = RegistryValue::Type;

// Bytes; 0 if not a number.
qint64 numberWidthOf(const TavPropertyOutlineItem *property)
{
    const bool isNumber = property && property->valueType() == Type::Number;
    return isNumber ? property->value().numberWidth() : 0;
}
} // namespace

PropertyFormatPanel::PropertyFormatPanel()
{
    InterfaceLoader loader;
    loader.addWidgetClass<EncodingPopUpButton>();
    loader.addWidgetClass<PopUpButton>();
    window_.reset(
        qobject_cast<QDialog *>(loader.load(QStringLiteral("PropertyFormatPanel")).release()));
    FloatingPanel::prepare(*window_);
    CloseKeys::addTo(*window_, {Qt::CTRL | Qt::Key_T});
    connectOutlets();
    connectActions();
    window_->installEventFilter(this);
    // Keeps the controls in place when it appears.
    QSizePolicy policy = stringEncodingPopUp_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    stringEncodingPopUp_->setSizePolicy(policy);
    stringEncodingPopUp_->setEncoding(TextEncodings::ascii, false);
}

PropertyFormatPanel::~PropertyFormatPanel()
{
    window_->removeEventFilter(this);
}

void PropertyFormatPanel::connectOutlets()
{
    const auto outlet = [this](auto *&field, const char *name) {
        field = InterfaceLoader::outlet<std::remove_reference_t<decltype(*field)>>(*window_, name);
    };
    outlet(messageField_, "propertyFormatMessageField");
    outlet(targetNoteField_, "propertyFormatTargetNoteField");
    outlet(sharedMessageField_, "propertyFormatSharedMessageField");
    outlet(automaticCheckbox_, "propertyFormatAutomaticCheckbox");
    outlet(stringEncodingPopUp_, "propertyFormatStringEncodingPopUp");
    outlet(classPopUpButton_, "propertyFormatClassPopUpButton");
    const auto matrix = [this](std::unique_ptr<ButtonMatrix> &field, const char *name) {
        field = std::make_unique<ButtonMatrix>(*InterfaceLoader::outlet<QWidget>(*window_, name));
        connect(field.get(), &ButtonMatrix::chosen, this, &PropertyFormatPanel::optionChanged);
    };
    matrix(typeMatrix_, "propertyFormatTypeMatrix");
    matrix(baseMatrix_, "propertyFormatBaseMatrix");
    matrix(byteOrderMatrix_, "propertyFormatByteOrderMatrix");
    matrix(signMatrix_, "propertyFormatSignMatrix");
    connect(automaticCheckbox_, &QCheckBox::clicked, this, &PropertyFormatPanel::optionChanged);
    connect(stringEncodingPopUp_, &PopUpButton::chosen, this, &PropertyFormatPanel::optionChanged);
    connect(classPopUpButton_, &PopUpButton::chosen, this, &PropertyFormatPanel::classChanged);
}

void PropertyFormatPanel::connectActions()
{
    static constexpr const char *names[ActionCount] = {
        "propertyFormatActionItemSetDefaults", "propertyFormatActionItemUseShared",
        "propertyFormatActionItemClearContents", "propertyFormatActionItemClearSubclasses"};
    auto *const button = InterfaceLoader::outlet<QPushButton>(*window_, "propertyFormatActionMenu");
    auto *const menu = new QMenu(button);
    button->setMenu(menu);
    for (int i = 0; i < ActionCount; ++i) {
        const auto tag = static_cast<ActionTag>(i);
        actions_[tag] = InterfaceLoader::outlet<QAction>(*window_, names[tag]);
        connect(actions_[tag], &QAction::triggered, this,
                [this, tag] { Q_EMIT actionChosen(tag); });
        menu->addAction(actions_[tag]);
    }
    menu->insertSeparator(actions_[ClearContents]);
}

bool PropertyFormatPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show || event->type() == QEvent::Hide)
        QMetaObject::invokeMethod(this, &PropertyFormatPanel::visibilityChanged);
    return QObject::eventFilter(watched, event);
}

void PropertyFormatPanel::showFormat(PropertyFormatOptions options,
                                     const TavPropertyOutlineItem *property)
{
    const qint64 numberWidth = numberWidthOf(property);
    const bool isAutomatic = options.unit == PropertyFormatOptions::automatic;
    automaticCheckbox_->setChecked(isAutomatic);
    nameTypeCells(numberWidth > 0);
    PropertyFormatOptions shown = options;
    if (isAutomatic)
        shown = {.unit = 1, .base = 16, .byteOrder = -1, .signedness = -1};
    if (numberWidth > 0 && shown.unit != PropertyFormatOptions::characters)
        shown.unit = numberWidth;
    selectCells(shown);
    enableCells(isAutomatic ? options : shown, numberWidth);
}

void PropertyFormatPanel::setMessage(const QString &text)
{
    messageField_->setText(text);
}

void PropertyFormatPanel::setTargetNote(const QString &text)
{
    targetNoteField_->setText(text);
    targetNoteField_->setHidden(text.isEmpty());
}

// Numbers without a cell leave the selection unchanged.
void PropertyFormatPanel::selectCells(const PropertyFormatOptions &options)
{
    typeMatrix_->selectTag(static_cast<int>(options.unit));
    if (options.unit == PropertyFormatOptions::characters) {
        if (!stringEncodingPopUp_->isHidden())
            stringEncodingPopUp_->setEncoding(static_cast<quint32>(options.encoding), false);
        byteOrderMatrix_->selectTag(
            static_cast<int>(options.byteOrder)); // of a number's characters
        return;
    }
    baseMatrix_->selectTag(static_cast<int>(options.base));
    byteOrderMatrix_->selectTag(static_cast<int>(options.byteOrder));
    signMatrix_->selectTag(static_cast<int>(options.signedness));
}

void PropertyFormatPanel::nameTypeCells(bool isNumber)
{
    for (const int width : {1, 2, 4, 8})
        typeMatrix_->cell(width)->setText(
            (isNumber ? tr("%1-bit integer") : tr("%1-bit integers")).arg(8 * width));
    typeMatrix_->cell(0)->setText(isNumber ? tr("ASCII Characters") : tr("Characters"));
    if (isNumber)
        stringEncodingPopUp_->setEncoding(TextEncodings::ascii, false);
    stringEncodingPopUp_->setVisible(!isNumber);
}

void PropertyFormatPanel::enableCells(const PropertyFormatOptions &options, qint64 numberWidth)
{
    const bool isAutomatic = options.unit == PropertyFormatOptions::automatic;
    const bool isCharacters = options.unit == PropertyFormatOptions::characters;
    const bool isNumber = numberWidth > 0;
    for (const int width : {0, 1, 2, 4, 8})
        typeMatrix_->cell(width)->setEnabled(!isAutomatic &&
                                             (!isNumber || width == 0 || width == numberWidth));
    stringEncodingPopUp_->setEnabled(isCharacters && !isNumber);
    baseMatrix_->setEnabled(!isAutomatic && !isCharacters);
    byteOrderMatrix_->setEnabled(!isAutomatic && (isNumber || !isCharacters));
    signMatrix_->setEnabled(options.isInteger() && baseMatrix_->selectedTag() == 10);
}

PropertyFormatOptions PropertyFormatPanel::format() const
{
    if (automaticCheckbox_->isChecked())
        return {.unit = PropertyFormatOptions::automatic};
    PropertyFormatOptions options;
    options.unit = typeMatrix_->selectedTag().value_or(1);
    if (options.unit == PropertyFormatOptions::characters)
        options.encoding = stringEncodingPopUp_->selectedEncoding();
    options.base = baseMatrix_->selectedTag().value_or(16);
    options.byteOrder = byteOrderMatrix_->selectedTag().value_or(0);
    options.signedness = signMatrix_->selectedTag().value_or(0);
    return options;
}

void PropertyFormatPanel::setClasses(const QStringList &classes)
{
    classPopUpButton_->clear();
    for (const QString &name : classes)
        classPopUpButton_->addItem(name, classPopUpButton_->count());
    classPopUpButton_->settle();
    classPopUpButton_->setEnabled(!classes.isEmpty());
}

void PropertyFormatPanel::selectClass(const QString &className)
{
    classPopUpButton_->setCurrentIndex(classPopUpButton_->findText(className));
    classPopUpButton_->settle();
}

QString PropertyFormatPanel::selectedClass() const
{
    return classPopUpButton_->currentText();
}

bool PropertyFormatPanel::isChoosing() const
{
    return classPopUpButton_->isChoosing() || stringEncodingPopUp_->isChoosing();
}

void PropertyFormatPanel::commitChoices()
{
    classPopUpButton_->commit();
    stringEncodingPopUp_->commit();
}

void PropertyFormatPanel::setStatusText(const QString &text)
{
    sharedMessageField_->setText(text);
}
