#pragma once

#include <QString>
#include <QUrl>

#include <functional>

/// The pages of the maker's site that the windows lead to.
namespace corvane::links {

/// Opens an address. The application's own is `openInBrowser`; tests keep what they are given instead.
using Opener = std::function<void(const QUrl&)>;

[[nodiscard]] QUrl website();
/// `source` tells the maker which view the question came from, such as "onboarding".
[[nodiscard]] QUrl contact(const QString& source);
/// The maker's other applications.
[[nodiscard]] QUrl catalogue();

/// Hands the address to the desktop. Nothing happens where no browser is known. Main thread only.
void openInBrowser(const QUrl& url);

} // namespace corvane::links
