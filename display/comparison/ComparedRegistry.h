// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <QDateTime>
#include <span>

class TavDataStore;

// What one side of a comparison is. Texts are null where they are unknown.
class ComparedRegistry
{
    Q_DECLARE_TR_FUNCTIONS(ComparedRegistry)
public:
    enum class Fact : quint8 { Source, Host, Architecture, KernelRelease, OperatingSystem, Read };

    // Source: the name of a file, or what the user calls it.
    ComparedRegistry(const TavDataStore &store, QString source);

    const QString &source() const { return source_; }
    const QString &host() const { return host_; }
    const QString &architecture() const { return architecture_; }
    const QString &kernelRelease() const { return kernelRelease_; }
    const QString &operatingSystem() const { return operatingSystem_; }
    const QDateTime &dateRead() const { return dateRead_; }

    static std::span<const Fact> facts();
    static QString title(Fact fact);
    QString text(Fact fact) const;
    QString line() const; // all of them
    // What to keep in mind when the two are of different machines or systems: a line each.
    static QStringList notes(const ComparedRegistry &before, const ComparedRegistry &after);

private:
    QString source_;
    QString host_;
    QString architecture_;
    QString kernelRelease_;
    QString operatingSystem_;
    QDateTime dateRead_;
};
