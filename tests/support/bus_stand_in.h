#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QUuid>
#include <functional>

// A D-Bus service on a connection of its own, with one object that answers every call through
// one function. It answers from the test's own thread: a client that blocked waiting for it would
// never hear it.
class BusStandIn : public QDBusVirtualObject {
public:
    // The reply to a call, made with createReply or createErrorReply; an empty message leaves the
    // call unknown.
    using Answer = std::function<QDBusMessage(const QDBusMessage &call)>;

    BusStandIn(QString service, QString path, Answer answer)
        : m_service(std::move(service))
        , m_path(std::move(path))
        , m_answer(std::move(answer))
    {
    }

    ~BusStandIn() override
    {
        stop();
        QDBusConnection::disconnectFromBus(bus.name());
    }

    // Whether the object and the service's name could be taken.
    [[nodiscard]] bool start()
    {
        return bus.registerVirtualObject(m_path, this) && bus.registerService(m_service);
    }

    // Gives the name and the object up, as a service that ends.
    void stop()
    {
        bus.unregisterService(m_service);
        bus.unregisterObject(m_path);
    }

    bool emitSignal(const QString &interface, const QString &name, const QVariantList &arguments,
                    const QString &path = {})
    {
        auto signal = QDBusMessage::createSignal(path.isEmpty() ? m_path : path, interface, name);
        signal.setArguments(arguments);
        return bus.send(signal);
    }

    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        const QDBusMessage reply = m_answer(message);
        return reply.type() != QDBusMessage::InvalidMessage && connection.send(reply);
    }

    QDBusConnection bus = QDBusConnection::connectToBus(
        QDBusConnection::SessionBus, QUuid::createUuid().toString(QUuid::WithoutBraces));

private:
    QString m_service;
    QString m_path;
    Answer m_answer;
};
