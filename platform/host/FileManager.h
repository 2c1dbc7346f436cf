#pragma once

#include <QString>
#include <functional>

// The desktop's file manager. Shows nothing until somebody is set to reveal files in it.
namespace FileManager {
using Revealer = std::function<void(const QString &file)>;

void setRevealer(Revealer revealer);
void reveal(const QString &file); // in its folder, selected
} // namespace FileManager
