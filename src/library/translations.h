#pragma once

#include <QLocale>

class QCoreApplication;

// Every program's translations for the session's language: Quennet's own, embedded in the
// program, and Qt's where the system has them.
namespace Translations {
// QLocale::system() follows LANGUAGE, LC_ALL, LC_MESSAGES and LANG.
void install(QCoreApplication &application, const QLocale &locale = QLocale::system());
} // namespace Translations
