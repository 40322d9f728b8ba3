#include "placement_records.h"

#include "atomic_file.h"
#include "error.h"
#include "logging.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace {
std::optional<QByteArray> readAll(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}
} // namespace

PlacementRecords::PlacementRecords(QString folder)
    : m_folder(std::move(folder))
{
}

QString PlacementRecords::placementFilePath() const
{
    return m_folder + u"/placements.json"_s;
}

QString PlacementRecords::releasedFilePath() const
{
    return m_folder + u"/released.json"_s;
}

PlacementFile PlacementRecords::load() const
{
    const auto bytes = readAll(placementFilePath());
    if (!bytes)
        return {};
    try {
        return PlacementFile::decode(*bytes);
    } catch (const DecodingError &error) {
        qCDebug(lcPlacements) << "Ignoring a damaged placement file:" << error.description();
        return {};
    }
}

bool PlacementRecords::save(const PlacementFile &file) const
{
    return writeAtomically(placementFilePath(), file.encode());
}

bool PlacementRecords::isReleased(const QString &displayId,
                                  const std::optional<Placement> &placement) const
{
    if (!placement)
        return false;
    const auto bytes = readAll(releasedFilePath());
    if (!bytes)
        return false;
    try {
        const auto released = ReleasedFile::decode(*bytes).released;
        const auto it = released.constFind(displayId);
        // Only this very placement counts: a release of an older one does not carry over.
        return it != released.cend() && *it == placement->setAt;
    } catch (const DecodingError &) {
        return false;
    }
}
