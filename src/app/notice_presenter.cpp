#include "notice_presenter.h"

#include <QCoroDBusPendingCall>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDesktopServices>
#include <QFileInfo>
#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace {

// The file manager selects the file where it implements the freedesktop interface; else the
// folder opens. Nothing waits for the file manager: a busy one costs at most two seconds before
// the folder opens instead.
QCoro::Task<> showItem(QUrl file)
{
    auto call = QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s,
                                               u"/org/freedesktop/FileManager1"_s,
                                               u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    call << QStringList { file.toString() } << QString();
    QDBusPendingCall pending = QDBusConnection::sessionBus().asyncCall(call, 2000);
    const QDBusMessage reply = co_await pending;
    if (reply.type() == QDBusMessage::ErrorMessage) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file.toLocalFile()).path()));
    }
}

} // namespace

NoticePresenter::NoticePresenter(QObject *parent)
    : QObject(parent)
{
}

void NoticePresenter::setNotice(const std::optional<Notice> &notice)
{
    if (notice == m_notice)
        return;
    const bool isNew = notice && (!m_notice || notice->identifier() != m_notice->identifier());
    m_notice = notice;
    Q_EMIT changed();
    if (isNew)
        Q_EMIT arrived();
}

void NoticePresenter::showFailure(const QString &message)
{
    setNotice(Notice::failed(message));
}

void NoticePresenter::dismiss()
{
    setNotice(std::nullopt);
    Q_EMIT dismissed();
}

NoticePresenter::Kind NoticePresenter::kind() const
{
    if (!m_notice)
        return Kind::None;
    switch (m_notice->kind()) {
    case Notice::Kind::Downloading:
        return Kind::Downloading;
    case Notice::Kind::Saved:
        return Kind::Saved;
    case Notice::Kind::Failed:
        return Kind::Failed;
    }
    return Kind::None;
}

QString NoticePresenter::text() const
{
    if (!m_notice) {
        return {};
    }
    switch (m_notice->kind()) {
    case Notice::Kind::Downloading:
        return m_notice->count() == 1
            ? tr("Downloading")
            : tr("Downloading %Ln files", nullptr, int(m_notice->count()));
    case Notice::Kind::Saved:
        return tr("Saved %1 to Downloads").arg(m_notice->url().fileName());
    case Notice::Kind::Failed:
        return m_notice->message();
    }
    return {};
}

QString NoticePresenter::percent() const
{
    if (!m_notice || m_notice->kind() != Notice::Kind::Downloading) {
        return {};
    }
    const QLocale locale;
    return locale.toString(qRound(m_notice->fraction() * 100)) + locale.percent();
}

double NoticePresenter::fraction() const
{
    return m_notice ? m_notice->fraction() : 0;
}

void NoticePresenter::showInFolder() const
{
    if (!m_notice || m_notice->kind() != Notice::Kind::Saved) {
        return;
    }
    showItem(m_notice->url());
}
