#pragma once

#include <QCoreApplication>
#include <QThread>

namespace corvane {

/// Ends the program unless called on the application's main thread: windows belong to that thread alone.
inline void requireMainThread() {
    if (QThread::currentThread() != QCoreApplication::instance()->thread()) {
        qFatal("Called from another thread than the main thread");
    }
}

} // namespace corvane
