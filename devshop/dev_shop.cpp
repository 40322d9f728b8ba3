#include "dev_shop.h"

#include "admin_routes.h"
#include "api_routes.h"
#include "atomic_file.h"
#include "certificate_authority.h"
#include "file_routes.h"
#include "shop_http.h"
#include "shop_pages.h"
#include "shop_state.h"

#include <QDir>
#include <QLoggingCategory>
#include <csignal>
#include <httplib.h>
#include <openssl/rand.h>
#include <sys/socket.h>

Q_LOGGING_CATEGORY(lcDevShop, "app.quennet.Quennet.DevShop")

using namespace Qt::Literals::StringLiterals;

namespace {
bool writeStateFile(const QString &path, const QByteArray &text, QFileDevice::Permissions mode)
{
    return writeAtomically(path, text + '\n', mode);
}

QString randomSecret()
{
    QByteArray bytes(16, '\0');
    RAND_bytes(reinterpret_cast<unsigned char *>(bytes.data()), int(bytes.size()));
    return QString::fromLatin1(bytes.toHex());
}
} // namespace

DevShop::DevShop(Options options)
    : m_options(std::move(options))
{
}

DevShop::~DevShop()
{
    stop();
}

bool DevShop::start()
{
    if (m_server)
        return true;
    auto content = ContentStore::load(m_options.contentDir);
    if (!content)
        return false;
    const auto authority = CertificateAuthority::loadOrCreate(m_options.stateDir);
    if (!authority)
        return false;

    // A client that hangs up mid-transfer must not take the process with it.
    std::signal(SIGPIPE, SIG_IGN);
    auto server = std::make_unique<httplib::SSLServer>(
        [authority](SSL_CTX &context) { return authority->configure(context); });
    if (!server->is_valid()) {
        qCWarning(lcDevShop) << "Could not set up TLS with the certificates in"
                             << m_options.stateDir;
        return false;
    }
    // Slowed transfers hold a thread each; and a short keep-alive lets stop() return soon.
    server->new_task_queue = [] { return new httplib::ThreadPool(24); };
    server->set_keep_alive_timeout(2);
    server->set_payload_max_length(1 << 20);
    // The library's default adds SO_REUSEPORT, which would let a second shop share a taken port.
    server->set_socket_options([](int socket) {
        const int on = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
    });
    const int port = m_options.port == 0
        ? server->bind_to_any_port("127.0.0.1")
        : (server->bind_to_port("127.0.0.1", m_options.port) ? m_options.port : -1);
    if (port <= 0) {
        qCWarning(lcDevShop) << "Could not listen on 127.0.0.1 port" << m_options.port;
        return false;
    }

    m_port = quint16(port);
    m_caPath = authority->caPath();
    m_adminSecret = randomSecret();
    const QDir state(m_options.stateDir);
    const auto publicFile = QFileDevice::ReadOwner | QFileDevice::WriteOwner
        | QFileDevice::ReadGroup | QFileDevice::ReadOther;
    if (!writeStateFile(state.filePath(u"port"_s), QByteArray::number(m_port), publicFile)
        || !writeStateFile(state.filePath(u"admin-secret"_s), m_adminSecret.toLatin1(),
                           QFileDevice::ReadOwner | QFileDevice::WriteOwner)) {
        qCWarning(lcDevShop) << "Could not write into" << m_options.stateDir;
        return false;
    }

    m_state = std::make_unique<ShopState>(std::move(*content),
                                          ShopState::Settings {
                                              .port = m_port,
                                              .linkLifetime = m_options.linkLifetime,
                                              .grant = { .interval = m_options.pollInterval,
                                                         .lifetime = m_options.codeLifetime,
                                                         .tokenFile = state.filePath(u"tokens"_s) },
                                          },
                                          m_adminSecret);
    ShopState &shop = *m_state;
    server->set_pre_routing_handler([&shop](const httplib::Request &request, httplib::Response &) {
        if (!request.path.starts_with("/_devshop/"))
            shop.count(QString::fromStdString(request.path),
                       QString::fromStdString(request.get_header_value("Range")));
        return httplib::Server::HandlerResponse::Unhandled;
    });
    installApiRoutes(*server, shop);
    installFileRoutes(*server, shop);
    installShopPages(*server, shop);
    installAdminRoutes(*server, shop);

    m_server = std::move(server);
    m_thread = std::thread([server = m_server.get()] { server->listen_after_bind(); });
    // stop() only reaches a server that is already accepting.
    while (!m_server->is_running())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    qCInfo(lcDevShop) << "Serving" << baseUrl().toString() << "from" << m_options.contentDir;
    return true;
}

void DevShop::stop()
{
    if (!m_server)
        return;
    m_state->setStopping();
    m_server->stop();
    m_thread.join();
    m_server.reset();
}

QUrl DevShop::baseUrl() const
{
    return QUrl(u"https://127.0.0.1:%1/api/app/v1"_s.arg(m_port));
}

bool DevShop::approve(const QString &userCode)
{
    return m_state && m_state->grant().decide(userCode, true);
}

bool DevShop::setFaults(const QJsonObject &faults)
{
    if (!m_state)
        return false;
    const QString problem = m_state->setFaults(faults);
    if (!problem.isEmpty())
        qCWarning(lcDevShop) << "Faults not set:" << problem;
    return problem.isEmpty();
}

QJsonObject DevShop::stats() const
{
    return m_state ? m_state->stats() : QJsonObject();
}

QString DevShop::issueToken()
{
    return m_state ? m_state->grant().issueToken() : QString();
}

void DevShop::advanceClock(std::chrono::seconds by)
{
    if (m_state)
        m_state->clock().advance(by);
}
