#include "Controls/Links.h"

#include <QDesktopServices>
#include <QUrlQuery>

namespace corvane::links {

QUrl website() {
    return {QStringLiteral("https://corvane.app")};
}

QUrl contact(const QString& source) {
    QUrl url(QStringLiteral("https://corvane.app/contact"));
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("source"), source);
    url.setQuery(query);
    return url;
}

QUrl catalogue() {
    return {QStringLiteral("https://corvane.app/apps")};
}

void openInBrowser(const QUrl& url) {
    QDesktopServices::openUrl(url);
}

} // namespace corvane::links
