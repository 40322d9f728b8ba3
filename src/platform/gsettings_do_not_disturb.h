#pragma once

#include "do_not_disturb.h"

#include <memory>

// Do Not Disturb of the GNOME family, in GSettings: GNOME's org.gnome.desktop.notifications
// show-banners (on while false), Cinnamon's org.cinnamon.desktop.notifications
// display-notifications (on while false) and MATE's org.mate.NotificationDaemon do-not-disturb.
// Changes made elsewhere arrive through GLib's main loop, which Qt's event dispatcher runs.
class GSettingsDoNotDisturb : public DoNotDisturb {
    Q_OBJECT

public:
    enum class Family { Gnome, Cinnamon, Mate };

    explicit GSettingsDoNotDisturb(Family family, QObject *parent = nullptr);
    ~GSettingsDoNotDisturb() override;

    // Whether the family's schema and key are installed; without them GSettings would abort.
    [[nodiscard]] static bool isAvailable(Family family);

    [[nodiscard]] QString name() const override;

private:
    struct Settings;

    void read();

    Family m_family;
    std::unique_ptr<Settings> m_settings;
};
