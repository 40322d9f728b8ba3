#include "translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

using namespace Qt::Literals::StringLiterals;

namespace {
void installIfFound(QCoreApplication &application, const QLocale &locale, const QString &name,
                    const QString &folder)
{
    auto *translator = new QTranslator(&application);
    if (translator->load(locale, name, u"_"_s, folder))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}
} // namespace

void Translations::install(QCoreApplication &application, const QLocale &locale)
{
    // English first, under the others: it holds only the plural forms that the source text
    // cannot, for every language Quennet has no translation of.
    installIfFound(application, QLocale(QLocale::English), u"quennet"_s, u":/i18n"_s);
    installIfFound(application, locale, u"qtbase"_s,
                   QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    installIfFound(application, locale, u"quennet"_s, u":/i18n"_s);
}
