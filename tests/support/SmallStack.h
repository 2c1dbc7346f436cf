#pragma once

#include <QThread>
#include <memory>

// Runs what must not use up the stack by recursion, on a small one.
template<class Action>
void onSmallStack(Action action)
{
    const std::unique_ptr<QThread> thread(QThread::create(action));
    thread->setStackSize(256 * 1024);
    thread->start();
    thread->wait();
}
