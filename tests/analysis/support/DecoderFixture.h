#pragma once

#include "analysis/decoding/AudioPCMDecoder.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

/// Decodes with real encoded files or scripted decoders, and checks after each test that no temporary file and no
/// decoder is left.
class DecoderFixture : public testing::Test {
protected:
    struct Options {
        int sampleRate = 11025;
        std::optional<double> maximumDuration = {};
        bool lowImpact = false;
        async::Duration timeout = async::seconds(60);
        std::stop_token stop = {};
        WorkerClock clock = WorkerClock::system();
    };

    void SetUp() override;
    void TearDown() override;

    QString path(const QString& name) const { return m_folder.filePath(name); }
    QByteArray contents(const QString& name) const;
    /// Writes a decoder: a shell script with the output's path in $out, which first leaves its process number in the
    /// file "pid".
    QUrl script(const QString& body) const;
    /// Makes a file by the real encoder. \param arguments all but the output's name.
    QUrl encoded(const QString& name, const QStringList& arguments) const;
    static QUrl realDecoder();

    static std::vector<float> decode(const QUrl& file, const QUrl& decoder, const Options& options);
    static std::vector<float> decode(const QUrl& file, const QUrl& decoder) { return decode(file, decoder, Options()); }
    /// The name of the DecoderError that decoding ends with; "samples" if it gives some.
    static QString errorOf(const QUrl& file, const QUrl& decoder, const Options& options);
    static QString errorOf(const QUrl& file, const QUrl& decoder) { return errorOf(file, decoder, Options()); }

private:
    QTemporaryDir m_folder;
    QByteArray m_temporaryFolderBefore;
};
