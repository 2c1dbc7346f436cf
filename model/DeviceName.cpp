// SPDX-License-Identifier: Apache-2.0
#include "model/DeviceName.h"

namespace {
QString bounded(const QString &text)
{
    QString part = text.left(DeviceName::maxSize).trimmed();
    if (!part.isEmpty() && part.back().isHighSurrogate())
        part.chop(1);
    return part.isEmpty() ? QString() : part;
}

QString joined(const QString &first, const QString &second, const QString &between)
{
    return first.isNull() || second.isNull() ? first + second : first + between + second;
}
} // namespace

DeviceName::DeviceName(const QString &model, const QString &vendor, const QString &className)
    : model_(bounded(model))
    , vendor_(bounded(vendor))
    , className_(bounded(className))
    , title_(joined(vendor_, model_, QStringLiteral(" ")))
{
    if (title_.isNull())
        title_ = className_;
}

QString DeviceName::shortTitle() const
{
    return model_.isNull() ? className_ : model_;
}

QString DeviceName::description() const
{
    const bool isOnlyClass = model_.isNull() && vendor_.isNull();
    return isOnlyClass ? title_ : joined(title_, className_, QStringLiteral(" — "));
}

DeviceName DeviceName::completedBy(const DeviceName &other) const
{
    const auto either = [](const QString &a, const QString &b) { return a.isNull() ? b : a; };
    return {either(model_, other.model_), either(vendor_, other.vendor_),
            either(className_, other.className_)};
}
