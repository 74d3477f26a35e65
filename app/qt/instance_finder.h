#pragma once
// Running instances find each other over per-user local sockets named after the window class:
// each instance listens on one, and the finder walks them asking request 16011.

#include "app/startup.h"

#include <QObject>
#include <QString>

#include <functional>
#include <string>

class QLocalServer;
class QLocalSocket;

namespace quirnel {

/// Answers other instances' requests for this process.
class InstanceServer : public QObject
{
    Q_OBJECT
public:
    /// `hasDocument` answers request 16011; `activate` brings the main window forward.
    InstanceServer(std::function<bool(const std::u16string& path)> hasDocument,
                   std::function<void()> activate, QObject* parent = nullptr);
    ~InstanceServer() override;

    /// Starts listening under this process's name; false when the socket cannot be made.
    bool Listen(const std::string& className);
    /// The socket name, or "" before Listen.
    QString Name() const;

private:
    void OnNewConnection();
    void OnReadyRead(QLocalSocket* socket);

    QLocalServer* m_server = nullptr;
    std::function<bool(const std::u16string&)> m_hasDocument;
    std::function<void()> m_activate;
};

/// The socket-walking finder. Requests are synchronous with short time-outs, so a hung
/// instance delays the search but never blocks it.
class LocalSocketInstanceFinder : public InstanceFinder
{
public:
    /// `ownName` is skipped (this process's own server), may be empty.
    explicit LocalSocketInstanceFinder(QString ownName = {}) : m_ownName(std::move(ownName)) {}

    std::optional<InstanceHandle> FindInstanceWithDocument(const std::string& className,
                                                           const std::string& path) override;
    void BringToForeground(const InstanceHandle& instance) override;

    void SetOwnName(QString ownName) { m_ownName = std::move(ownName); }
    /// The user name part of socket names.
    static std::string UserName();

private:
    QString m_ownName;
};

/// Sends one request and returns the answer; nullopt when the instance cannot be reached.
std::optional<int> SendInstanceRequest(const QString& socketName, std::uint32_t code,
                                       const std::u16string& path);

} // namespace quirnel
