// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>
#include <variant>

// A value, or the error that explains why there is none.
template<class Value, class Error>
class Result
{
public:
    Result(Value value)
        : content_(std::in_place_index<0>, std::move(value))
    {}
    Result(Error error)
        : content_(std::in_place_index<1>, std::move(error))
    {}

    explicit operator bool() const { return content_.index() == 0; }
    Value &operator*() & { return std::get<0>(content_); }
    Value operator*() && { return std::get<0>(std::move(content_)); }
    const Error &error() const { return std::get<1>(content_); }

private:
    std::variant<Value, Error> content_;
};
