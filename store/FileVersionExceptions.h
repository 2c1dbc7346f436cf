// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <exception>

// A snapshot of an unsupported version. The reason is for the user, translated.
class UnsupportedFileVersionException : public std::exception
{
public:
    explicit UnsupportedFileVersionException(const QString &reason)
        : reason_(reason)
    {}
    const QString &reason() const { return reason_; }

private:
    QString reason_;
};

class TavOldUnsupportedFileVersionException : public UnsupportedFileVersionException
{
public:
    TavOldUnsupportedFileVersionException();
    const char *what() const noexcept override { return "TavOldUnsupportedFileVersionException"; }
};

class TavNewUnsupportedFileVersionException : public UnsupportedFileVersionException
{
public:
    TavNewUnsupportedFileVersionException();
    const char *what() const noexcept override { return "TavNewUnsupportedFileVersionException"; }
};
