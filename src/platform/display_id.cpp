#include "display_id.h"

#include "desktop_backend.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QUuid>

using namespace Qt::Literals::StringLiterals;

namespace {
// Quennet's own namespace for display names.
const QUuid displayNamespace = QUuid::createUuidV5(QUuid(u"6ba7b811-9dad-11d1-80b4-00c04fd430c8"_s),
                                                   u"https://quennet.app/display"_s);

// Qt 6.4 keeps the padding of EDID text fields as a trailing "-".
QString edidText(const QString &text)
{
    QString result = text.trimmed();
    while (result.endsWith(u'-'))
        result.chop(1);
    return result.trimmed();
}

// A company's legal form says nothing to the person looking at its monitor.
QString maker(const QString &manufacturer)
{
    static const QRegularExpression legalForm(
        uR"(,?\s+(Inc\.?|Corp\.?|Corporation|Co\.,\s*Ltd\.?|Ltd\.?|GmbH|AG|S\.A\.)$)"_s,
        QRegularExpression::CaseInsensitiveOption);
    return edidText(manufacturer).remove(legalForm);
}

QString madeName(const DesktopScreen &screen)
{
    static const QRegularExpression builtIn(u"^(eDP|LVDS|DSI)(-|$)"_s);
    if (builtIn.match(screen.connector).hasMatch())
        return QCoreApplication::translate("DisplayId", "Built-in display");
    const QString make = maker(screen.manufacturer);
    QString model = edidText(screen.model);
    // Monitors often repeat their maker in the model's name: "Dell" and "DELL U2720Q".
    const QString first = make.section(u' ', 0, 0);
    if (!first.isEmpty() && model.startsWith(first, Qt::CaseInsensitive))
        return model;
    const QString name = QString(make + u' ' + model).trimmed();
    return name.isEmpty() ? screen.connector : name;
}

QString idOf(const QString &name)
{
    return QUuid::createUuidV5(displayNamespace, name).toString(QUuid::WithoutBraces).toUpper();
}

QString edidName(const DesktopScreen &screen)
{
    const QString manufacturer = edidText(screen.manufacturer);
    QString model = edidText(screen.model);
    const QString serial = edidText(screen.serial);
    if (manufacturer.isEmpty() && model.isEmpty() && serial.isEmpty())
        return {};
    return u"edid:"_s + manufacturer + u'\n' + model + u'\n' + serial;
}
} // namespace

QString displayId(const DesktopScreen &screen)
{
    const QString edid = edidName(screen);
    return idOf(edid.isEmpty() ? u"connector:"_s + screen.connector : edid);
}

QList<QString> displayIds(const QList<DesktopScreen> &screens)
{
    QList<QString> ids;
    for (const DesktopScreen &screen : screens)
        ids.append(displayId(screen));
    for (qsizetype i = 0; i < ids.size(); ++i) {
        if (ids.count(ids[i]) < 2)
            continue;
        const QString shared = ids[i];
        for (qsizetype j = i; j < ids.size(); ++j) {
            if (ids[j] == shared)
                ids[j] = idOf(edidName(screens[j]) + u"\nconnector:"_s + screens[j].connector);
        }
    }
    return ids;
}

QList<QString> displayNames(const QList<DesktopScreen> &screens)
{
    QList<QString> made;
    for (const DesktopScreen &screen : screens)
        made.append(madeName(screen));
    QList<QString> names;
    for (qsizetype i = 0; i < made.size(); ++i) {
        names.append(made.count(made[i]) > 1 ? made[i] + u" ("_s + screens[i].connector + u')'
                                             : made[i]);
    }
    return names;
}
