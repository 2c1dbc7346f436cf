#pragma once

#include <QByteArray>

// Appends the digest that ends an archive to content that lacks it, so that what stands before it
// is looked at even when it was tampered with.
QByteArray sealArchive(const QByteArray &content);
// The content of a sound archive, without the digest.
QByteArray unsealArchive(const QByteArray &archive);
