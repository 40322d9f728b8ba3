#pragma once

#include <QFile>
#include <QProcess>
#include <QString>
#include <QThread>
#include <optional>

// The development shop in a process of its own, so that its work does not count as ours; its
// port once it listens. The including target defines QUENNET_DEVSHOP_PROGRAM.
inline std::optional<quint16> serveDevShop(QProcess &shop, const QString &content,
                                           const QString &state)
{
    using namespace Qt::Literals::StringLiterals;
    shop.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    shop.start(u"" QUENNET_DEVSHOP_PROGRAM ""_s,
               { u"serve"_s, u"--content"_s, content, u"--state"_s, state });
    if (!shop.waitForStarted())
        return std::nullopt;
    for (int i = 0; i < 600 && shop.state() == QProcess::Running; ++i) {
        QFile port(state + u"/port"_s);
        if (port.open(QIODevice::ReadOnly) && port.size() > 0)
            return quint16(port.readAll().toUInt());
        QThread::msleep(50);
    }
    return std::nullopt;
}
