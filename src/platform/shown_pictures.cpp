#include "shown_pictures.h"

#include "atomic_file.h"
#include "logging.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;

ShownPictures::ShownPictures(QString path)
    : m_path(std::move(path))
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    const QJsonObject pictures = root.value("pictures"_L1).toObject();
    for (auto it = pictures.begin(); it != pictures.end(); ++it) {
        if (it->isString())
            m_pictures.insert(it.key(), it->toString());
    }
    m_extra = root.value("extra"_L1).toObject();
}

std::optional<QString> ShownPictures::picture(const QString &connector) const
{
    const auto it = m_pictures.constFind(connector);
    return it == m_pictures.cend() ? std::nullopt : std::optional(*it);
}

void ShownPictures::setPicture(const QString &connector, const QString &path)
{
    m_pictures.insert(connector, path);
}

void ShownPictures::forget(const QString &connector)
{
    m_pictures.remove(connector);
}

void ShownPictures::save() const
{
    QJsonObject pictures;
    for (auto it = m_pictures.begin(); it != m_pictures.end(); ++it)
        pictures.insert(it.key(), *it);
    // On a full disk the last record stays as it was.
    if (!writeAtomically(
            m_path,
            QJsonDocument(QJsonObject { { u"pictures"_s, pictures }, { u"extra"_s, m_extra } })
                .toJson(QJsonDocument::Compact)))
        qCWarning(lcDesktopRecord) << "Could not save" << m_path;
}
