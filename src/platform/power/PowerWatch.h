#pragma once

#include <QObject>

/// Tells when power becomes low or the machine hot, and when that is over. This one tells nothing. Thread: main.
class PowerWatch : public QObject {
    Q_OBJECT

public:
    /// Watches from now on, or no more. Nothing is told while nobody wants to know.
    virtual void setWatching(bool isWatching);

    /// The one that tells nothing.
    static PowerWatch& none();

Q_SIGNALS:
    void constrainedChanged(bool isConstrained);
};
