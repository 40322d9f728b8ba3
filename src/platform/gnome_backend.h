#pragma once

#include "desktop_backend.h"
#include "shown_pictures.h"

#include <QThreadPool>
#include <memory>

// The GNOME family, through GSettings: GNOME, Budgie and Unity (org.gnome.desktop.background,
// with a light/dark pair and timed slideshows), Cinnamon and MATE. These keep one picture for all
// monitors; different pictures per display become one spanned picture of the arrangement,
// made again when the displays change.
class GnomeBackend : public DesktopBackend {
    Q_OBJECT

public:
    enum class Family { Gnome, Cinnamon, Mate };

    // folder: where spanned pictures and what each screen shows are kept.
    GnomeBackend(Family family, QString folder, QObject *parent = nullptr);
    ~GnomeBackend() override;

    // The family of an XDG_CURRENT_DESKTOP value ("ubuntu:GNOME"), if it is one of these.
    [[nodiscard]] static std::optional<Family> familyOf(const QString &currentDesktop);
    // Whether the family's settings schema is installed; without it GSettings would abort.
    [[nodiscard]] static bool isAvailable(Family family);

    [[nodiscard]] QString name() const override;
    [[nodiscard]] Capabilities capabilities() const override;
    [[nodiscard]] std::optional<QString> picture(const DesktopScreen &screen) const override;
    [[nodiscard]] std::optional<QString> thumbnail(const DesktopScreen &screen,
                                                   bool dark) const override;
    QCoro::Task<> setPicture(DesktopPicture picture, QList<DesktopScreen> screens) override;

private:
    struct Settings;

    [[nodiscard]] QString desktopPicture() const;
    [[nodiscard]] bool isSpanned() const;
    // Writes the keys, then reads them back: dconf drops writes it cannot make without a word.
    void write(const QString &path, const std::optional<QString> &dark, bool spanned);
    QCoro::Task<> span();

    Family m_family;
    QString m_folder;
    std::unique_ptr<Settings> m_settings;
    ShownPictures m_shown;
    // One composition at a time, and only the newest is written: each removes the earlier files.
    QThreadPool m_composer;
    quint64 m_spanGeneration = 0;
};
