#pragma once

#include <QChar>
#include <QString>

#include <string>

/// Characters that set the direction of the text that follows. Not written in literals: one that leaves them
/// open could mislead whoever reads the source.
namespace corvane::test {

inline std::string firstStrongIsolate() {
    return QString(QChar(0x2068)).toStdString();
}

inline std::string rightToLeftOverride() {
    return QString(QChar(0x202E)).toStdString();
}

inline std::string rightToLeftIsolate() {
    return QString(QChar(0x2067)).toStdString();
}

} // namespace corvane::test
