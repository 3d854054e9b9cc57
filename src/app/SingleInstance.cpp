#include "app/SingleInstance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

// What goes over the socket: one URL a line, an empty line as the end; "ok" and a line end as the answer.

namespace {

constexpr qsizetype kMaximumMessage = qsizetype(8) << 20;
constexpr qsizetype kMaximumSocketPath = 100; // the system takes 107 bytes, and a few more are added for a moment
constexpr char kAnswer[] = "ok\n";
constexpr char kReceived[] = "received"; // property of a socket: the bytes so far

int left(const QDeadlineTimer& deadline)
{
    return static_cast<int>(deadline.remainingTime());
}

QByteArray messageFor(const QList<QUrl>& files)
{
    QByteArray message;
    for (const QUrl& file : files)
        message.append(file.toEncoded()).append('\n');
    return message.append('\n');
}

QList<QUrl> filesOf(const QByteArray& message)
{
    QList<QUrl> files;
    for (const QByteArray& line : message.split('\n')) {
        const QUrl url = QUrl::fromEncoded(line, QUrl::StrictMode);
        if (url.isLocalFile())
            files.append(url);
    }
    return files;
}

bool isWhole(const QByteArray& message)
{
    return message == "\n" || message.endsWith("\n\n");
}

} // namespace

SingleInstance::SingleInstance(QString folder, std::chrono::milliseconds patience)
    : m_folder(std::move(folder))
    , m_patience(patience)
{
}

SingleInstance::~SingleInstance()
{
    m_server.reset();
    if (m_lock >= 0)
        ::close(m_lock);
}

SingleInstance::Role SingleInstance::begin(const QList<QUrl>& files)
{
    // A first one that is about to begin or to end takes nothing yet, or no more: then its socket is there, or its
    // place is free, before the patience is over.
    const QDeadlineTimer deadline(m_patience);
    while (!takeLock()) {
        const Role role = handOver(files, deadline);
        if (role == Role::HandedOver || deadline.hasExpired())
            return role;
    }
    listen();
    return Role::First;
}

/// \return false if another process holds the lock. Where no lock can be had at all, the program still starts.
bool SingleInstance::takeLock()
{
    QDir().mkpath(m_folder);
    const QByteArray path = QFile::encodeName(m_folder + QStringLiteral("/instance.lock"));
    m_lock = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (m_lock < 0 || ::flock(m_lock, LOCK_EX | LOCK_NB) == 0)
        return true;
    const bool isTaken = errno == EWOULDBLOCK;
    ::close(m_lock);
    m_lock = -1;
    return !isTaken;
}

/// Beside the lock; in the temporary folder where that path is too long for a socket.
QString SingleInstance::socketName() const
{
    const QString beside = m_folder + QStringLiteral("/instance.socket");
    const QByteArray encoded = QFile::encodeName(beside);
    if (encoded.size() <= kMaximumSocketPath)
        return beside;
    const QByteArray digest = QCryptographicHash::hash(encoded, QCryptographicHash::Sha256).toHex().first(16);
    return QStringLiteral("velmora-%1-%2").arg(::getuid()).arg(QLatin1StringView(digest));
}

void SingleInstance::listen()
{
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this, &SingleInstance::accept);
    QLocalServer::removeServer(socketName()); // left behind by a process that was killed: the lock says so
    m_server->listen(socketName());           // without it later starts end unanswered, which loses nothing
}

void SingleInstance::accept()
{
    while (QLocalSocket* const socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { receive(*socket); });
        receive(*socket);
    }
}

void SingleInstance::receive(QLocalSocket& socket)
{
    const QByteArray message = socket.property(kReceived).toByteArray() + socket.readAll();
    if (message.size() > kMaximumMessage) {
        socket.abort();
        return;
    }
    if (!isWhole(message)) {
        socket.setProperty(kReceived, message);
        return;
    }
    socket.disconnect(this); // one message a connection
    socket.write(kAnswer);
    socket.flush();
    socket.disconnectFromServer();
    Q_EMIT filesReceived(filesOf(message));
}

SingleInstance::Role SingleInstance::handOver(const QList<QUrl>& files, const QDeadlineTimer& deadline) const
{
    QLocalSocket socket;
    socket.connectToServer(socketName());
    if (!socket.waitForConnected(left(deadline))) {
        ::usleep(20'000); // it has its lock but not its socket yet, or no longer
        return Role::Unanswered;
    }
    socket.write(messageFor(files));
    QByteArray answer;
    while (!answer.endsWith('\n') && !deadline.hasExpired()) {
        if (socket.bytesToWrite() > 0)
            socket.waitForBytesWritten(left(deadline));
        if (!socket.waitForReadyRead(left(deadline)) && socket.bytesAvailable() == 0 && !deadline.hasExpired() &&
            socket.state() != QLocalSocket::ConnectedState)
            break;
        answer += socket.readAll();
    }
    return answer == kAnswer ? Role::HandedOver : Role::Unanswered;
}
