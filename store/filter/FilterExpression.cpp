// SPDX-License-Identifier: Apache-2.0
#include "store/filter/FilterExpression.h"

#include "store/filter/FilterParser.h"

FilterExpression::FilterExpression(std::shared_ptr<const Content> content)
    : content_(std::move(content))
{}

Result<FilterExpression, FilterError> FilterExpression::parse(const QString &text)
{
    return FilterParser(text).parse();
}

const QString &FilterExpression::text() const
{
    return content_->text;
}

const FilterNode &FilterExpression::root() const
{
    return content_->root;
}

const std::vector<QStringList> &FilterExpression::properties() const
{
    return content_->properties;
}

const QStringList &FilterExpression::ancestors() const
{
    return content_->ancestors;
}
