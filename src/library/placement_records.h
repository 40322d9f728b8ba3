#pragma once

#include "placement.h"

#include <optional>

// Reads and writes "placements.json", and reads "released.json", which the workspace helper
// writes when it lets one of Quennet's placements go.
class PlacementRecords {
public:
    // folder: where both files live; the application folder unless a test says otherwise.
    explicit PlacementRecords(QString folder);

    [[nodiscard]] QString placementFilePath() const;
    [[nodiscard]] QString releasedFilePath() const;

    // Never fails: a missing or damaged file gives the default record.
    [[nodiscard]] PlacementFile load() const;
    // Written whole and atomically; false when it could not be.
    [[nodiscard]] bool save(const PlacementFile &file) const;
    // Read afresh on every call: another process writes it.
    [[nodiscard]] bool isReleased(const QString &displayId,
                                  const std::optional<Placement> &placement) const;

private:
    QString m_folder;
};
