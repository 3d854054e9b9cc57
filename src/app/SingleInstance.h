#pragma once

#include <QList>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <memory>

class QDeadlineTimer;
class QLocalServer;
class QLocalSocket;

/// Lets one program at a time work with a data folder. The process that holds the folder's lock is the first and
/// listens; a later start hands its files over and ends. The lock goes with its process, so nothing stale ever
/// counts. Thread: main.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Role {
        First,      ///< go on
        HandedOver, ///< the first took the files: end
        Unanswered  ///< the first runs but does not answer: say so and end
    };
    /// How long a first instance may take to answer. Chosen: a window that is busy for longer looks dead.
    static constexpr std::chrono::milliseconds kPatience{2000};

    /// \param folder absolute path of the data folder, made if it is missing.
    explicit SingleInstance(QString folder, std::chrono::milliseconds patience = kPatience);
    ~SingleInstance() override;

    /// Becomes the first, or hands \p files to the one that is. Blocks up to the patience. Called once.
    Role begin(const QList<QUrl>& files);

Q_SIGNALS:
    /// Another start handed these over, perhaps none: its user wants to see the window.
    void filesReceived(const QList<QUrl>& files);

private:
    bool takeLock();
    void listen();
    void accept();
    void receive(QLocalSocket& socket);
    Role handOver(const QList<QUrl>& files, const QDeadlineTimer& deadline) const;
    QString socketName() const;

    const QString m_folder;
    const std::chrono::milliseconds m_patience;
    int m_lock = -1;
    std::unique_ptr<QLocalServer> m_server;
};
