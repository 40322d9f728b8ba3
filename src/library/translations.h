#pragma once

class QCoreApplication;

// Every program's translations for the session's language: Quennet's own, embedded in the
// program, and Qt's where the system has them.
namespace Translations {
void install(QCoreApplication &application);
}
