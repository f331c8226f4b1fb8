#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace corvane::test {

/// A fake of what shows files and folders: the file manager on the bus, and the default program for folders.
class FakeFileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

  public:
    Q_SCRIPTABLE Q_INVOKABLE void ShowItems(const QStringList& urls, const QString& /*startupId*/) {
        shown = urls;
    }

    Q_INVOKABLE void open(const QUrl& url) { opened = url; }

    QStringList shown;
    QUrl opened;
};

} // namespace corvane::test
