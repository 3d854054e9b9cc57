#pragma once

#include <QObject>

/// The player's volume, 0 to 1, apart from the player for the same reason as its progress.
class AudioVolumeState : public QObject {
    Q_OBJECT

public:
    /// As the user chose it; the fade of a seek is not seen here.
    float value() const { return m_value; }

Q_SIGNALS:
    /// value() differs.
    void valueChanged();

private:
    friend class AudioPlayer;
    void setValue(float value);

    float m_value = 0;
};
