#pragma once

#include "notice.h"

#include <QObject>
#include <optional>

// The panel's notice line in words: what NoticeView shows for the store's current notice.
class NoticePresenter : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool visible READ isVisible NOTIFY changed)
    Q_PROPERTY(Kind kind READ kind NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString percent READ percent NOTIFY changed)
    Q_PROPERTY(double fraction READ fraction NOTIFY changed)

public:
    enum class Kind {
        None,
        Downloading,
        Saved,
        Failed,
    };
    Q_ENUM(Kind)

    explicit NoticePresenter(QObject *parent = nullptr);

    void setNotice(const std::optional<Notice> &notice);
    // A failure of something the user asked for in the views; it stays until the store's next
    // notice or a dismissal.
    void showFailure(const QString &message);

    [[nodiscard]] bool isVisible() const { return m_notice.has_value(); }
    [[nodiscard]] Kind kind() const;
    [[nodiscard]] QString text() const;
    // Whole percent in the user's locale, while downloading.
    [[nodiscard]] QString percent() const;
    [[nodiscard]] double fraction() const;

    // Shows a saved file in the file manager.
    Q_INVOKABLE void showInFolder() const;
    // The close button of a saved or failed notice.
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void changed();
    // A new notice, not an update of the one shown (downloads progressing): the view shows it
    // coming in.
    void arrived();
    void dismissed();

private:
    std::optional<Notice> m_notice;
};
