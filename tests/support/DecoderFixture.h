#pragma once

#include "platform/process/WorkerClock.h"

#include <QTemporaryDir>
#include <QUrl>
#include <gtest/gtest.h>

#include <stop_token>
#include <thread>
#include <vector>

/// Time that passes only in waits, which take next to no real time and are written down.
struct FastTime {
    async::Duration now = std::chrono::hours(1);
    std::vector<async::Duration> waits;

    WorkerClock clock();
};

/// Gives decoding code real encoded files and scripted decoders, and checks after each test that no temporary file and
/// no decoder is left.
class DecoderFixture : public testing::Test {
protected:
    /// A decoder that writes and then hangs; "ready" appears when it does.
    static const QString kHanging;
    /// One that is deaf to polite requests as well.
    static const QString kStubborn;

    void SetUp() override;
    void TearDown() override;

    QString path(const QString& name) const { return m_folder.filePath(name); }
    QUrl file(const QString& name) const { return QUrl::fromLocalFile(path(name)); }
    QByteArray contents(const QString& name) const;
    /// Writes a decoder: a shell script with the output's path in $out, which first leaves its process number in the
    /// file "pid".
    QUrl script(const QString& body) const;
    /// Makes a file by the real encoder. \param arguments its source and all else but the output, between blanks.
    QUrl encoded(const QString& name, const QString& arguments) const;
    static QUrl realDecoder();
    /// What the scripted decoder was told last, if it wrote its arguments to "told" line by line: all but the output,
    /// whose folder has to be that for temporary files and whose name has to begin with \p prefix.
    std::string told(const char* prefix) const;
    /// Stops the source once the script says that it is ready.
    std::jthread stopWhenReady(std::stop_source& source) const;

private:
    QTemporaryDir m_folder;
    QByteArray m_temporaryFolderBefore;
};
