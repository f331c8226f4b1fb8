#pragma once

#include <QString>
#include <QUrl>

#include <functional>

/// The pages of the maker's site that the windows link to.
namespace corvane::links {

/// Opens an address. The application uses `openInBrowser`; tests record the address instead.
using Opener = std::function<void(const QUrl&)>;

[[nodiscard]] QUrl website();
/// `source` names the view that has the link, such as "onboarding".
[[nodiscard]] QUrl contact(const QString& source);
/// The maker's other applications.
[[nodiscard]] QUrl catalogue();

/// Passes the address to the desktop. Does nothing if no browser is known. Main thread only.
void openInBrowser(const QUrl& url);

} // namespace corvane::links
