#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <optional>

// What a backend set on each screen, by connector, kept in a small JSON file across restarts:
// desktops that cannot tell what they show are answered from it. Backends may keep a few values
// of their own beside it (extra()).
class ShownPictures {
public:
    // Loads the file; a missing or damaged one is empty.
    explicit ShownPictures(QString path);

    [[nodiscard]] std::optional<QString> picture(const QString &connector) const;
    [[nodiscard]] QMap<QString, QString> all() const { return m_pictures; }
    void setPicture(const QString &connector, const QString &path);
    void forget(const QString &connector);

    [[nodiscard]] QJsonValue extra(const QString &key) const { return m_extra.value(key); }
    void setExtra(const QString &key, const QJsonValue &value) { m_extra.insert(key, value); }

    // Written atomically; failures only cost the memory across a restart.
    void save() const;

private:
    QString m_path;
    QMap<QString, QString> m_pictures;
    QJsonObject m_extra;
};
