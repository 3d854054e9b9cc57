#include "core/library/undo/History.h"

#include "async/MainQueue.h"
#include "platform/Localization.h"

#include <QPointer>

#include <algorithm>
#include <vector>

namespace {

// Chosen: far beyond what anybody walks back.
constexpr qsizetype kMaximumSteps = 200;
constexpr qint64 kMaximumBytes = 256 * 1024 * 1024;

/// What its registrations take back, in reverse order of registration.
class EditStep final : public History::Step {
public:
    struct Part {
        History::Action undo;
        History::Action redo;
        History::Question isSpent;
    };

    EditStep(const QString& name, const History::Facts& facts, quint64 turn, Part part)
        : Step(History::Kind::Edit)
        , m_name(name)
        , m_facts(facts)
        , m_turn(turn)
        , m_parts{std::move(part)}
    {
    }

    QString name() const override { return m_name; }
    qint64 byteCount() const override { return m_facts.byteCount; }
    bool tellsItself() const override { return m_facts.tellsItself; }
    bool isSpent() const override
    {
        return std::ranges::all_of(m_parts, [](const Part& part) { return part.isSpent && part.isSpent(); });
    }
    History::Outcome undo() override
    {
        for (auto part = m_parts.rbegin(); part != m_parts.rend(); ++part)
            part->undo();
        return History::Outcome::Done;
    }
    bool canRedo() const override { return true; }
    History::Outcome redo() override
    {
        for (const Part& part : m_parts)
            part.redo();
        return History::Outcome::Done;
    }
    bool absorb(Step& later) override
    {
        auto* edit = dynamic_cast<EditStep*>(&later);
        if (!edit || edit->m_name != m_name || edit->m_turn != m_turn)
            return false;
        std::ranges::move(edit->m_parts, std::back_inserter(m_parts));
        m_facts.byteCount += edit->m_facts.byteCount;
        return true;
    }

private:
    QString m_name;
    History::Facts m_facts;
    quint64 m_turn;
    std::vector<Part> m_parts;
};

QString localizedName(const std::shared_ptr<History::Step>& step)
{
    return VelmoraLocalization::string(step->name());
}

} // namespace

History::History() = default;
History::~History() = default;

void History::push(std::shared_ptr<Step> step)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_undone.clear();
    m_isSomethingNew = true;
    if (m_done.isEmpty() || m_done.last() == m_underWay || !m_done.last()->absorb(*step))
        m_done.append(std::move(step));
    trim();
    emit changed();
}

void History::registerUndo(const QString& actionName, Action undo, Action redo, Question isSpent)
{
    registerUndo(actionName, Facts(), std::move(undo), std::move(redo), std::move(isSpent));
}

void History::registerUndo(const QString& actionName, const Facts& facts, Action undo, Action redo, Question isSpent)
{
    if (!m_turnEnds) {
        m_turnEnds = true;
        async::MainQueue::post([self = QPointer<History>(this)] {
            if (self) {
                ++self->m_turn;
                self->m_turnEnds = false;
            }
        });
    }
    push(std::make_shared<EditStep>(actionName, facts, m_turn,
                                    EditStep::Part{std::move(undo), std::move(redo), std::move(isSpent)}));
}

/// The oldest steps go where there are too many, or where they keep too much.
void History::trim()
{
    qint64 bytes = 0;
    qsizetype kept = 0;
    while (kept < m_done.size() && kept < kMaximumSteps) {
        bytes += m_done[m_done.size() - 1 - kept]->byteCount();
        if (kept > 0 && bytes > kMaximumBytes)
            break;
        ++kept;
    }
    m_done.remove(0, m_done.size() - kept);
}

void History::withdraw(const Step& step)
{
    const auto isIt = [&](const std::shared_ptr<Step>& each) { return each.get() == &step; };
    if (m_done.removeIf(isIt) + m_undone.removeIf(isIt) > 0)
        emit changed();
}

void History::ended(const Step& step, Outcome outcome)
{
    if (m_underWay.get() != &step)
        return;
    const std::shared_ptr<Step> taken = std::exchange(m_underWay, nullptr);
    const bool isUndone = (outcome == Outcome::Done) != m_isRedoing;
    if (isUndone || taken->isSpent())
        m_done.removeOne(taken);
    if (isUndone && taken->canRedo() && !taken->isSpent() && !m_isSomethingNew)
        m_undone.append(taken);
    emit changed();
}

/// A move to the Trash goes first, unless rows were removed after it. \return -1 if there is nothing.
qsizetype History::nextIndex() const
{
    qsizetype last = -1;
    for (qsizetype index = m_done.size() - 1; index >= 0; --index) {
        const Step& step = *m_done[index];
        if (step.isSpent())
            continue;
        if (last < 0)
            last = index;
        if (step.kind() != Kind::Edit)
            return step.kind() == Kind::Trash ? index : last;
    }
    return last;
}

bool History::canUndo() const
{
    return !isBusy() && nextIndex() >= 0;
}

bool History::canRedo() const
{
    return !isBusy() && !m_undone.isEmpty();
}

QString History::undoActionName() const
{
    const qsizetype index = nextIndex();
    return index >= 0 ? localizedName(m_done[index]) : QString();
}

QString History::redoActionName() const
{
    return m_undone.isEmpty() ? QString() : localizedName(m_undone.last());
}

void History::undo()
{
    VELMORA_ASSERT_MAIN_THREAD();
    while (canUndo()) {
        const std::shared_ptr<Step> step = m_done[nextIndex()];
        m_underWay = step;
        m_isRedoing = m_isSomethingNew = false;
        const Outcome outcome = step->undo();
        if (outcome == Outcome::UnderWay) {
            emit changed();
            return;
        }
        m_underWay.reset();
        m_done.removeOne(step);
        if (outcome == Outcome::Done && step->canRedo())
            m_undone.append(step);
        emit changed();
        if (outcome == Outcome::Done && !step->tellsItself())
            emit undone(localizedName(step));
        if (outcome == Outcome::Done)
            return;
    }
}

void History::redo()
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (!canRedo())
        return;
    const std::shared_ptr<Step> step = m_undone.takeLast();
    m_done.append(step);
    m_underWay = step;
    m_isRedoing = true;
    m_isSomethingNew = false;
    const Outcome outcome = step->redo();
    if (outcome != Outcome::UnderWay)
        m_underWay.reset();
    emit changed();
    if (!step->tellsItself())
        emit redone(localizedName(step));
}

void History::clear()
{
    m_done.clear();
    m_undone.clear();
    emit changed();
}
