// SPDX-License-Identifier: Apache-2.0
#include "platform/text/CompactArray.h"

#include <gtest/gtest.h>

TEST(CompactArray, SharesTheOwnersBufferBothWaysButCopiesLiteralsAndSlices)
{
    const QString owner = QString::fromLatin1("a text of its own");
    const CompactString compact(owner);
    EXPECT_EQ(static_cast<const void *>(compact.data()), owner.constData());
    EXPECT_EQ(compact.toOwner().constData(), owner.constData());
    EXPECT_EQ(CompactString(QStringLiteral("literal")).toOwner(), QStringLiteral("literal"));
    const QByteArray bytes("0123456789");
    const QByteArray slice = QByteArray::fromRawData(bytes.constData() + 3, 4);
    const CompactBytes copied(slice);
    EXPECT_NE(static_cast<const void *>(copied.data()), slice.constData());
    EXPECT_EQ(copied.toOwner(), QByteArray("3456"));
    QString trimmed = QString::fromLatin1("abcdef");
    trimmed.remove(0, 2); // may leave room before the text
    EXPECT_EQ(CompactString(trimmed).toOwner(), QStringLiteral("cdef"));
}

TEST(CompactArray, EmptyAndNullGiveAnEmptyOwner)
{
    for (const QString &owner : {QString(), QStringLiteral("")}) {
        const CompactString compact(owner);
        EXPECT_TRUE(compact.toOwner().isEmpty());
        EXPECT_FALSE(compact.toOwner().isNull());
        EXPECT_EQ(compact, CompactString());
    }
    EXPECT_FALSE(CompactBytes().toOwner().isNull());
}

TEST(CompactArray, OwnerThatChangesLeavesTheTextAlone)
{
    QString owner = QString::fromLatin1("before");
    CompactString compact(owner);
    owner.replace(0, 1, u'B');
    QString given = compact.toOwner();
    given.append(u'!');
    EXPECT_EQ(compact.toOwner(), QStringLiteral("before"));
    CompactString other = std::move(compact);
    compact = other;
    EXPECT_EQ(compact, CompactString(QStringLiteral("before")));
    const auto parts = std::move(compact).release();
    EXPECT_EQ(CompactString::adopt(parts).toOwner(), QStringLiteral("before"));
}
