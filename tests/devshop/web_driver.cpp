#include "web_driver.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace {
// The key of element references in WebDriver replies.
const auto elementKey = u"element-6066-11e4-a52e-4f735466cecf"_s;
const auto chromium = u"/usr/bin/chromium"_s;

bool run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished(30'000) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
}
} // namespace

QString WebDriver::missingTool()
{
    for (const QString &tool : { u"chromedriver"_s, u"certutil"_s })
        if (QStandardPaths::findExecutable(tool).isEmpty())
            return tool;
    return QFile::exists(chromium) ? QString() : chromium;
}

WebDriver::WebDriver(const QString &caPath)
    : m_caPath(caPath)
    , m_curl(caPath)
{
}

WebDriver::~WebDriver()
{
    if (!m_session.isEmpty())
        call(u"DELETE"_s, {});
    m_driver.terminate();
    m_driver.waitForFinished(10'000);
}

bool WebDriver::start()
{
    // Chromium on Linux trusts what the NSS database in $HOME/.pki/nssdb trusts.
    const QString database = u"sql:"_s + m_home.filePath(u".pki/nssdb"_s);
    QDir().mkpath(m_home.filePath(u".pki/nssdb"_s));
    if (!run(u"certutil"_s, { u"-d"_s, database, u"-N"_s, u"--empty-password"_s })
        || !run(u"certutil"_s,
                { u"-d"_s, database, u"-A"_s, u"-t"_s, u"C,,"_s, u"-n"_s,
                  u"Quennet development shop"_s, u"-i"_s, m_caPath })) {
        m_error = u"certutil could not make the certificate database"_s;
        return false;
    }

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"HOME"_s, m_home.path());
    m_driver.setProcessEnvironment(environment);
    m_driver.setProcessChannelMode(QProcess::MergedChannels);
    m_driver.start(u"chromedriver"_s, { u"--port=0"_s });
    const QRegularExpression started(u"started successfully on port (\\d+)"_s);
    QByteArray output;
    while (!started.match(QString::fromLatin1(output)).hasMatch()
           && m_driver.waitForReadyRead(30'000))
        output += m_driver.readAllStandardOutput();
    const QString port = started.match(QString::fromLatin1(output)).captured(1);
    if (port.isEmpty()) {
        m_error = u"chromedriver did not start: "_s + QString::fromLocal8Bit(output);
        return false;
    }
    m_endpoint = u"http://127.0.0.1:"_s + port;

    const QJsonArray arguments {
        u"--headless"_s,
        u"--no-sandbox"_s,
        u"--disable-gpu"_s,
        u"--no-first-run"_s,
        u"--disable-background-networking"_s,
        u"--disable-component-update"_s,
        u"--disable-sync"_s,
        QString(u"--user-data-dir="_s + m_home.filePath(u"profile"_s)),
    };
    const QJsonObject capabilities {
        { u"alwaysMatch"_s,
          QJsonObject { { u"browserName"_s, u"chrome"_s },
                        { u"goog:chromeOptions"_s,
                          QJsonObject { { u"binary"_s, chromium }, { u"args"_s, arguments } } } } }
    };
    const QJsonValue session =
        call(u"POST"_s, u"/session"_s, { { u"capabilities"_s, capabilities } });
    m_session = session[u"sessionId"_s].toString();
    // A click that submits a form returns before the next page is there: finding waits for it.
    if (!m_session.isEmpty())
        call(u"POST"_s, u"/timeouts"_s, { { u"implicit"_s, 15'000 } });
    if (m_session.isEmpty())
        m_error = u"no browser session: "_s
            + QString::fromUtf8(QJsonDocument(session.toObject()).toJson());
    return !m_session.isEmpty();
}

QJsonValue WebDriver::call(const QString &method, const QString &path, const QJsonObject &body)
{
    const QString url =
        m_endpoint + (path.startsWith(u"/session"_s) ? path : u"/session/"_s + m_session + path);
    QStringList arguments { u"-X"_s, method };
    if (method != "GET"_L1)
        arguments << u"-H"_s << u"Content-Type: application/json"_s << u"--data-binary"_s
                  << QString::fromUtf8(QJsonDocument(body).toJson(QJsonDocument::Compact));
    return m_curl.run(arguments << url).json()[u"value"_s];
}

void WebDriver::open(const QString &url)
{
    call(u"POST"_s, u"/url"_s, { { u"url"_s, url } });
}

QString WebDriver::title()
{
    return call(u"GET"_s, u"/title"_s).toString();
}

QString WebDriver::find(const QString &selector)
{
    return call(u"POST"_s, u"/element"_s,
                { { u"using"_s, u"css selector"_s }, { u"value"_s, selector } })[elementKey]
        .toString();
}

QString WebDriver::property(const QString &element, const QString &name)
{
    return call(u"GET"_s, u"/element/%1/property/%2"_s.arg(element, name)).toString();
}

QString WebDriver::text(const QString &element)
{
    return call(u"GET"_s, u"/element/%1/text"_s.arg(element)).toString();
}

void WebDriver::type(const QString &element, const QString &text)
{
    call(u"POST"_s, u"/element/%1/value"_s.arg(element), { { u"text"_s, text } });
}

void WebDriver::click(const QString &element)
{
    call(u"POST"_s, u"/element/%1/click"_s.arg(element));
}
