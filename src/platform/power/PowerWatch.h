#pragma once

#include <QObject>

/// Tells when power becomes low or the machine hot, and when that is over. This one tells nothing. Thread: main.
class PowerWatch : public QObject {
    Q_OBJECT

public:
    /// Watches from now on, or no more, and then tells nothing. Until the first look the state counts as not
    /// constrained; after a pause, as it was last told.
    virtual void setWatching(bool isWatching);

    /// The one that tells nothing.
    static PowerWatch& none();

Q_SIGNALS:
    /// Only while watching, and only where it differs from what was told before.
    void constrainedChanged(bool isConstrained);
};
