#include "app/qt/instance_finder.h"

#include "app/instance_protocol.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>

#include <filesystem>
#include <unistd.h>

namespace quirnel {

namespace {

constexpr int kConnectTimeoutMs = 500;
constexpr int kAnswerTimeoutMs = 3000;

QString SocketFolder()
{
    // QLocalServer puts a plain name into the temporary folder; walking it finds every
    // instance that listens there.
    return QDir::tempPath();
}

std::u16string AbsolutePath16(const std::string& path)
{
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(path, error);
    std::string text = error ? path : absolute.lexically_normal().string();
    QString q = QString::fromStdString(text);
    return q.toStdU16String();
}

} // namespace

InstanceServer::InstanceServer(std::function<bool(const std::u16string&)> hasDocument,
                               std::function<void()> activate, QObject* parent)
    : QObject(parent), m_hasDocument(std::move(hasDocument)), m_activate(std::move(activate))
{}

InstanceServer::~InstanceServer() = default;

bool InstanceServer::Listen(const std::string& className)
{
    if (m_server)
        return true;
    const QString name = QString::fromStdString(InstanceSocketName(
        className, LocalSocketInstanceFinder::UserName(), static_cast<long>(getpid())));
    auto* server = new QLocalServer(this);
    server->setSocketOptions(QLocalServer::UserAccessOption);
    // A crashed process with our pid may have left its socket behind.
    QLocalServer::removeServer(name);
    if (!server->listen(name)) {
        delete server;
        return false;
    }
    m_server = server;
    connect(m_server, &QLocalServer::newConnection, this, &InstanceServer::OnNewConnection);
    return true;
}

QString InstanceServer::Name() const
{
    return m_server ? m_server->serverName() : QString();
}

void InstanceServer::OnNewConnection()
{
    while (QLocalSocket* socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { OnReadyRead(socket); });
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        if (socket->bytesAvailable() > 0)
            OnReadyRead(socket);
    }
}

void InstanceServer::OnReadyRead(QLocalSocket* socket)
{
    QByteArray buffered = socket->property("buffered").toByteArray() + socket->readAll();
    std::size_t consumed = 0;
    bool malformed = false;
    auto request = DecodeRequest(std::string_view(buffered.constData(), buffered.size()), &consumed,
                                 &malformed);
    if (malformed) {
        socket->disconnectFromServer();
        return;
    }
    if (!request) {
        socket->setProperty("buffered", buffered);
        return;
    }
    socket->setProperty("buffered", QByteArray());
    int answer = 0;
    if (request->code == kRequestHasDocument && m_hasDocument)
        answer = m_hasDocument(request->path) ? 1 : 0;
    else if (request->code == kRequestActivate && m_activate) {
        m_activate();
        answer = 1;
    }
    std::string bytes = EncodeAnswer(answer);
    socket->write(bytes.data(), static_cast<qint64>(bytes.size()));
    socket->flush();
}

std::string LocalSocketInstanceFinder::UserName()
{
    QString user = qEnvironmentVariable("USER");
    if (user.isEmpty())
        user = QString::number(getuid());
    return user.toStdString();
}

std::optional<int> SendInstanceRequest(const QString& socketName, std::uint32_t code,
                                       const std::u16string& path)
{
    QLocalSocket socket;
    socket.connectToServer(socketName);
    if (!socket.waitForConnected(kConnectTimeoutMs)) {
        // Nobody listens: the process ended without removing its socket.
        if (socket.error() == QLocalSocket::ConnectionRefusedError)
            QLocalServer::removeServer(socketName);
        return std::nullopt;
    }
    std::string bytes = EncodeRequest({code, path});
    socket.write(bytes.data(), static_cast<qint64>(bytes.size()));
    if (!socket.waitForBytesWritten(kAnswerTimeoutMs))
        return std::nullopt;
    QByteArray answer;
    while (answer.size() < 4) {
        if (!socket.waitForReadyRead(kAnswerTimeoutMs))
            return std::nullopt;
        answer += socket.readAll();
    }
    socket.disconnectFromServer();
    return DecodeAnswer(std::string_view(answer.constData(), answer.size()));
}

std::optional<InstanceHandle>
LocalSocketInstanceFinder::FindInstanceWithDocument(const std::string& className,
                                                    const std::string& path)
{
    if (path.empty())
        return std::nullopt;
    const std::u16string absolute = AbsolutePath16(path);
    const QString prefix = QString::fromStdString(InstanceSocketPrefix(className, UserName()));
    QDir folder(SocketFolder());
    const QStringList names =
        folder.entryList({prefix + QStringLiteral("*")}, QDir::System | QDir::Files, QDir::Name);
    int asked = 0;
    for (const QString& name : names) {
        if (asked >= kMaxInstances)
            break;
        if (name == m_ownName)
            continue;
        ++asked;
        std::optional<int> answer = SendInstanceRequest(name, kRequestHasDocument, absolute);
        if (answer && *answer != 0)
            return name.toStdString();
    }
    return std::nullopt;
}

void LocalSocketInstanceFinder::BringToForeground(const InstanceHandle& instance)
{
    SendInstanceRequest(QString::fromStdString(instance), kRequestActivate, {});
}

} // namespace quirnel
