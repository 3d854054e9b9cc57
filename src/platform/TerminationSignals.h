#pragma once

#include <QObject>

/// Turns the system's polite requests to end (SIGTERM, SIGINT, SIGHUP) into a signal of the event loop, so that the
/// program ends by its ordinary road and saves. One object at a time. Thread: main.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void requested();
};
