#pragma once

#include "Support/Words.h"

#include <QString>

#include <string>

class QCoreApplication;

/// The catalogues of the application's texts. A text's key is its English wording.
namespace corvane::translations {

/// The place of the catalogue with the English words that fit this system better than the keys do. There is
/// no such catalogue where the keys fit.
[[nodiscard]] QString systemWords();

/// Has the application's texts in this system's words. Before the first view is made; main thread.
void install(QCoreApplication& application);

/// A phrase of the core in the words that the user reads; to be handed to the core as `Words`.
[[nodiscard]] std::string words(const Phrase& phrase);

} // namespace corvane::translations
