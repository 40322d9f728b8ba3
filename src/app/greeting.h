#pragma once

#include <QObject>

class Defaults;

// What the user meets on opening Quennet: the welcome the first time, what changed after an
// update. Each is shown once; a start at login shows and records nothing.
class Greeting : public QObject {
    Q_OBJECT
    // The Markdown the what's-new window shows.
    Q_PROPERTY(QString notes READ notes NOTIFY notesChanged)
    Q_PROPERTY(
        bool showsWhatsNew READ showsWhatsNew WRITE setShowsWhatsNew NOTIFY showsWhatsNewChanged)

public:
    enum class Kind { None, Welcome, WhatsNew };
    Q_ENUM(Kind)

    struct Build {
        QString version;
        bool development = false;
        QString changelog; // CHANGELOG.md's text
    };

    Greeting(Defaults *defaults, Build build, QObject *parent = nullptr);

    // What to show as the user opens Quennet, recorded as seen.
    [[nodiscard]] Kind greet();
    // The whole changelog, asked for in the About pane.
    void showChangelog();

    [[nodiscard]] QString notes() const { return m_notes; }
    [[nodiscard]] bool showsWhatsNew() const;
    void setShowsWhatsNew(bool on);

Q_SIGNALS:
    void notesChanged();
    void showsWhatsNewChanged();
    // A change of the setting couldn't be saved.
    void notSaved();

private:
    void setNotes(const QString &notes);

    Defaults *m_defaults;
    Build m_build;
    QString m_notes;
};
