#include "core/library/undo/UndoManager.h"

#include "async/MainQueue.h"
#include "core/library/undo/UndoMoment.h"
#include "platform/Localization.h"

#include <QPointer>
#include <QUndoCommand>

namespace {

constexpr int kMergeableID = 1;
constexpr int kLimit = 200; // steps; chosen: far beyond what anybody walks back

/// One step: what its registrations take back, in reverse order of registration.
class Step final : public QUndoCommand {
public:
    Step(const QString& name, quint64 turn, UndoManager::Action undo, UndoManager::Action redo)
        : m_name(name)
        , m_turn(turn)
        , m_undo{std::move(undo)}
        , m_redo{std::move(redo)}
    {
    }

    const QString& name() const { return m_name; }
    quint64 moment() const { return m_moment; }
    int id() const override { return kMergeableID; }

    bool mergeWith(const QUndoCommand* other) override
    {
        const auto* later = static_cast<const Step*>(other);
        if (later->m_name != m_name || later->m_turn != m_turn)
            return false;
        m_moment = later->m_moment;
        m_undo.insert(m_undo.end(), later->m_undo.begin(), later->m_undo.end());
        m_redo.insert(m_redo.end(), later->m_redo.begin(), later->m_redo.end());
        return true;
    }

    void undo() override
    {
        for (auto action = m_undo.rbegin(); action != m_undo.rend(); ++action)
            (*action)();
    }

    void redo() override
    {
        // The stack redoes a step when it is pushed, when the work is done already.
        if (!m_isPushed) {
            m_isPushed = true;
            return;
        }
        m_moment = nextUndoMoment();
        for (const UndoManager::Action& action : m_redo)
            action();
    }

private:
    QString m_name;
    quint64 m_turn;
    quint64 m_moment = nextUndoMoment();
    std::vector<UndoManager::Action> m_undo;
    std::vector<UndoManager::Action> m_redo;
    bool m_isPushed = false;
};

QString localizedName(const QUndoStack& stack, int index)
{
    const auto* step = static_cast<const Step*>(stack.command(index));
    return step ? VelmoraLocalization::string(step->name()) : QString();
}

} // namespace

UndoManager::UndoManager(QObject* parent)
    : QObject(parent)
{
    m_stack.setUndoLimit(kLimit);
    connect(&m_stack, &QUndoStack::indexChanged, this, &UndoManager::changed);
}

void UndoManager::registerUndo(const QString& actionName, Action undo, Action redo)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (!m_turnEnds) {
        m_turnEnds = true;
        async::MainQueue::post([self = QPointer<UndoManager>(this)] {
            if (self) {
                ++self->m_turn;
                self->m_turnEnds = false;
            }
        });
    }
    m_stack.push(new Step(actionName, m_turn, std::move(undo), std::move(redo)));
}

bool UndoManager::canUndo() const
{
    return !isBusy() && (m_stack.canUndo() || isOthersTurn());
}

bool UndoManager::isOthersTurn() const
{
    const auto* step = static_cast<const Step*>(m_stack.command(m_stack.index() - 1));
    return m_other.lastMoment && m_other.lastMoment() > (step ? step->moment() : 0);
}

bool UndoManager::canRedo() const
{
    return !isBusy() && m_stack.canRedo();
}

QString UndoManager::undoActionName() const
{
    return isOthersTurn() ? m_other.actionName() : localizedName(m_stack, m_stack.index() - 1);
}

QString UndoManager::redoActionName() const
{
    return localizedName(m_stack, m_stack.index());
}

void UndoManager::undo()
{
    if (isBusy())
        return;
    if (isOthersTurn())
        m_other.undo();
    else
        m_stack.undo();
}

void UndoManager::redo()
{
    if (!isBusy())
        m_stack.redo();
}

void UndoManager::clear()
{
    m_stack.clear();
}
