// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <memory>
#include <optional>

class TavDataStore;

// The part of a registry path's text that is wrong, and why.
struct RegistryPathProblem
{
    qsizetype start;
    qsizetype length;
    QString message;
};

// Reads registry paths part by part while they are being typed, and the other names that find an
// entry. Unlike the store's look-up it reports how far they lead, and it logs nothing.
class RegistryPathReader
{
    Q_DECLARE_TR_FUNCTIONS(RegistryPathReader)
public:
    using Problem = std::optional<RegistryPathProblem>;

    explicit RegistryPathReader(std::shared_ptr<const TavDataStore> dataStore);

    // The paths of the entries below the text's last "/"; outside of a plane, the planes and other
    // names that begin with the text; sorted.
    const QStringList &candidates(const QString &text);
    // None while the text may still become the path of an entry. The name being typed may have the
    // wrong case, because the candidates correct it.
    Problem problem(const QString &text);
    Problem problemOfWhole(const QString &path); // of a finished path
    void refresh() { begin_.reset(); }           // after a change of the registry

private:
    void read(const QString &text);
    bool isInPlane(const QString &text) const;
    Problem otherProblem(const QString &text) const;
    void readNames(qsizetype position, const QString &plane);
    Problem planeProblem(const QString &text) const;
    Problem nameProblem(const QString &begin, const QString &name) const;

    std::shared_ptr<const TavDataStore> dataStore_;
    std::optional<QString> begin_; // of the text that was read: in a plane, up to its last "/"
    QStringList candidates_;       // after it
    Problem problem_;              // in it
};
