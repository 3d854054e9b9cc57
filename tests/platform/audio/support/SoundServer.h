#pragma once

#include <QProcess>
#include <QTemporaryDir>

#include <memory>
#include <vector>

/// A sound server of the test's own whose only output throws sound away and can be listened to. The process's default
/// output leads to it from its construction on.
class SoundServer {
public:
    /// Why it cannot be had here; empty if it can.
    static QString whyNot();

    explicit SoundServer(int sampleRate);
    ~SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

    bool isRunning() const;
    void startRecording();
    /// What was heard since then: the left channel, from the first sound on.
    std::vector<float> stopRecording();
    /// What was heard so far, without the silence in front.
    std::vector<float> recorded() const;
    /// Ends the server, as a device that is pulled out.
    void kill();

private:
    QTemporaryDir m_folder;
    QProcess m_server;
    QProcess m_recorder;
};
