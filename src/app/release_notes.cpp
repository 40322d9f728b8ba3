#include "release_notes.h"

#include <QRegularExpression>
#include <QStringList>
#include <QVersionNumber>

using namespace Qt::Literals::StringLiterals;

namespace {
struct Section {
    QString name; // between the brackets of its heading: "1.2.0" or "Unreleased"
    QString text;
};

QList<Section> sections(const QString &changelog)
{
    static const QRegularExpression heading(u"^##\\s+\\[([^\\]]+)\\](.*)$"_s);
    // Link definitions at the bottom ("[1.2.0]: https://…") belong to no section.
    static const QRegularExpression link(u"^\\[[^\\]]+\\]:\\s"_s);
    QList<Section> found;
    for (const QString &line : changelog.split(u'\n')) {
        const auto match = heading.match(line);
        if (match.hasMatch()) {
            // Shown without the brackets, which only make the heading a link on the web.
            const QString name = match.captured(1).trimmed();
            found.append({ name, u"## "_s + name + match.captured(2) + u'\n' });
        } else if (!found.isEmpty() && !link.match(line).hasMatch()) {
            found.last().text += line + u'\n';
        }
    }
    return found;
}

QString joined(const QList<Section> &chosen)
{
    QStringList texts;
    for (const Section &section : chosen)
        texts.append(section.text.trimmed());
    return texts.join(u"\n\n"_s);
}
} // namespace

namespace ReleaseNotes {
QString since(const QString &changelog, const QString &seen, const QString &running,
              bool development)
{
    const QVersionNumber last = QVersionNumber::fromString(seen);
    const QVersionNumber now = QVersionNumber::fromString(running);
    QList<Section> chosen;
    for (const Section &section : sections(changelog)) {
        const bool unreleased = section.name.compare("Unreleased"_L1, Qt::CaseInsensitive) == 0;
        if (unreleased && !development)
            continue;
        const QVersionNumber version = unreleased ? now : QVersionNumber::fromString(section.name);
        if (!version.isNull() && version > last && version <= now)
            chosen.append(section);
    }
    return joined(chosen);
}

QString all(const QString &changelog)
{
    return joined(sections(changelog));
}
} // namespace ReleaseNotes
