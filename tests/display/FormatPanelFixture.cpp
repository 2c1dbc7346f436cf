// SPDX-License-Identifier: Apache-2.0
#include "FormatPanelFixture.h"

#include "display/PropertyFormatStore.h"
#include "platform/preferences/PreferencesStore.h"
#include "tests/support/PopUpChoice.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QTest>

FormatPanelFixture::FormatPanelFixture()
{
    QObject::connect(&controller_, &TavFormatController::dataViewOptionsChanged,
                     &controller_.propertyFormatPanel(),
                     [this](TavRegistryProperty *item) { reported_.push_back(item); });
    selectNone();
    controller_.showPropertyFormatPanel();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&controller_.propertyFormatPanel()));
}

FormatPanelFixture::~FormatPanelFixture()
{
    controller_.disconnect(&controller_.propertyFormatPanel());
    controller_.propertyFormatPanel().hide();
    selectNone();
}

TavPropertyOutlineItem &FormatPanelFixture::select(const RegistryValue &value, const char *path)
{
    entry_ =
        store_.entry({QStringLiteral("Own"), QStringLiteral("Mid"), QStringLiteral("Root")}, value);
    TavPropertyOutlineItem &item = itemAt(entry_, path);
    controller_.setSelectedPropertyItem(&item);
    return item;
}

void FormatPanelFixture::click(const char *name)
{
    auto *const button = control<QAbstractButton>(name);
    ASSERT_NE(button, nullptr) << name;
    QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
}

void FormatPanelFixture::chooseClass(const char *name)
{
    auto *const popUp = control<QComboBox>("propertyFormatClassPopUpButton");
    const int index = popUp->findText(QString::fromLatin1(name));
    ASSERT_GE(index, 0) << name;
    chooseInList(*popUp, index);
}

std::string FormatPanelFixture::matrixText(const char *name) const
{
    QString text;
    for (const QRadioButton *cell : control<QWidget>(name)->findChildren<QRadioButton *>()) {
        const QString tag = cell->property("tag").toString();
        text += (cell->isEnabled() ? tag : u'(' + tag + u')') +
                (cell->isChecked() ? QStringLiteral("* ") : QStringLiteral(" "));
    }
    return text.trimmed().toStdString();
}

std::string FormatPanelFixture::panelText() const
{
    const auto *const popUp = control<QComboBox>("propertyFormatStringEncodingPopUp");
    const auto *const automatic = control<QCheckBox>("propertyFormatAutomaticCheckbox");
    std::string text = control<QLabel>("propertyFormatMessageField")->text().toStdString() +
                       (automatic->isChecked() ? "\nautomatic" : "\nunit") + ' ' +
                       matrixText("propertyFormatTypeMatrix") + "\nbase " +
                       matrixText("propertyFormatBaseMatrix") + "\norder " +
                       matrixText("propertyFormatByteOrderMatrix") + "\nsign " +
                       matrixText("propertyFormatSignMatrix") + '\n';
    if (popUp->isVisible())
        text += "encoding " + popUp->currentData().toString().toStdString() +
                (popUp->isEnabled() ? "\n" : " disabled\n");
    return text;
}

QString FormatPanelFixture::statusText() const
{
    return control<QLabel>("propertyFormatSharedMessageField")->text();
}

std::string FormatPanelFixture::storedFormats() const
{
    const PreferencesStore &stored = PreferencesStore::shared(PropertyFormatStore::domain());
    QStringList lines;
    for (const QString &key : stored.storedKeys())
        lines << key.section(QStringLiteral("::"), 0, 0) + QStringLiteral(": ") +
                     key.section(QStringLiteral("::"), 1) + u' ' + stored.string(key) + u'\n';
    lines.sort();
    return lines.join(QString()).toStdString();
}

QString FormatPanelFixture::defaultFormat() const
{
    return PreferencesStore::standard().string(PreferenceKeys::defaultFormat.toString());
}
