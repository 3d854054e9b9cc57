#pragma once

#include "work/WorkBoard.h"
#include "work/WorkQueue.h"

#include <QHash>
#include <QString>

/// A whole kind of background work but for its logic: sums of texts, two phases that fill one queue. What a further
/// concern needs to join is what stands here.
class MadeUpKind final : public QObject, private WorkConcern<QString, int> {
    Q_OBJECT

public:
    struct Dependencies {
        Scheduler& scheduler;
        WorkBoard& board;
        async::Executor& executor;
    };

    static Allowance allow(const Circumstances& now, qsizetype)
    {
        return {now.isScrolling ? 0 : 1, async::Priority::Background, now.isPlaying ? Pace::Gentle : Pace::Full};
    }
    static inline const WorkKind kKind{40, &allow, 0, {}, async::seconds(0.6), "Sums: %d of %d"};

    explicit MadeUpKind(const Dependencies& dependencies)
        : m_entry(dependencies.board, kKind)
        , m_queue(kKind, *this, dependencies.scheduler, dependencies.executor)
    {
        connect(&m_entry, &WorkEntry::stopRequested, this, [this] { m_queue.drop(); });
    }

    void find(const QStringList& texts)
    {
        m_queue.append(texts);
        m_entry.show(m_queue.progress());
    }
    const QHash<QString, int>& sums() const { return m_sums; }

Q_SIGNALS:
    void sumsChanged(const QSet<QString>& texts);

private:
    WorkJob<int> begin(const QString& text, const Allowance&) override
    {
        if (m_sums.contains(text))
            return WorkJob<int>::unwanted();
        return WorkJob<int>::onWorker([text](std::stop_token) {
            int sum = 0;
            for (const QChar letter : text)
                sum += letter.unicode();
            return sum;
        });
    }
    WorkEnd finished(const QString& text, std::optional<int> sum) override
    {
        if (!sum)
            return WorkEnd::OnceMore;
        m_sums.insert(text, *sum);
        emit sumsChanged({text});
        if (text.size() > 1) // the second phase
            find({text.first(1)});
        return WorkEnd::Done;
    }
    void statesChanged(const QSet<QString>&) override { m_entry.show(m_queue.progress()); }

    QHash<QString, int> m_sums;
    WorkEntry m_entry;
    WorkQueue<QString, int> m_queue;
};
