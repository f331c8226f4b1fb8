#pragma once

#include "Support/Words.h"

#include <QString>

#include <string>

class QCoreApplication;

/// The catalogues of the application's texts. A text's key is its English wording.
namespace corvane::translations {

/// The path of the catalogue with English texts that suit this system better than the keys. There is no such
/// catalogue where the keys fit.
[[nodiscard]] QString systemWords();

/// Installs the catalogue for this system, if any. To be called on the main thread before the first view is
/// created.
void install(QCoreApplication& application);

/// A phrase of the core in the user's language; passed to the core as `Words`.
[[nodiscard]] std::string words(const Phrase& phrase);

} // namespace corvane::translations
