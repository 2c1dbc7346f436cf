// SPDX-License-Identifier: Apache-2.0
#include "explorer/sheets/Sheet.h"

#include "platform/desktop/InterfaceLoader.h"
#include "platform/widgets/FactField.h"

#include <QLineEdit>
#include <QPushButton>

Sheet::Sheet(const char *interfaceFile, QWidget &window)
{
    InterfaceLoader loader;
    loader.addWidgetClass<FactField>();
    dialog_ = qobject_cast<QDialog *>(loader.load(QLatin1String(interfaceFile)).release());
    Q_ASSERT(dialog_);
    dialog_->setParent(&window, Qt::Sheet);
    dialog_->setWindowModality(Qt::WindowModal);
    connect(dialog_, &QDialog::finished, this, [this](int returnCode) {
        if (returnCode == 0)
            return;
        report();
        Q_EMIT performed();
    });
}

Sheet::~Sheet()
{
    delete dialog_;
}

void Sheet::connectButtons(const char *cancelButton, const char *performButton)
{
    connect(InterfaceLoader::outlet<QPushButton>(*dialog_, cancelButton), &QPushButton::clicked,
            this, &Sheet::cancel);
    connect(InterfaceLoader::outlet<QPushButton>(*dialog_, performButton), &QPushButton::clicked,
            this, &Sheet::perform);
}

void Sheet::openAt(QLineEdit &field)
{
    dialog_->open();
    field.setFocus(Qt::OtherFocusReason);
    field.selectAll();
}

void Sheet::cancel()
{
    dialog_->done(0);
}

void Sheet::perform()
{
    dialog_->done(1);
}
