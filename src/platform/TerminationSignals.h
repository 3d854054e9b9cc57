#pragma once

#include <QObject>

/// Turns the system's polite requests to end (SIGTERM, SIGINT, SIGHUP) into a signal of the event loop, so that the
/// program ends by its ordinary road and saves. One object at a time. Thread: main.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    /// Takes the three requests over until its end; where that fails they end the program at once, as without it.
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    /// A request has come. Several that come close together are one.
    void requested();
};
