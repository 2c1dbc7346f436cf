#include "platform/host/FileManager.h"

namespace {
FileManager::Revealer &currentRevealer()
{
    static FileManager::Revealer revealer;
    return revealer;
}
} // namespace

void FileManager::setRevealer(Revealer revealer)
{
    currentRevealer() = std::move(revealer);
}

void FileManager::reveal(const QString &file)
{
    if (const Revealer &revealer = currentRevealer())
        revealer(file);
}
