#include "ui/covers/CoverChoice.h"

CoverChoice::CoverChoice(async::Executor& executor, QObject* parent)
    : QObject(parent)
    , m_executor(executor)
{
}

void CoverChoice::choose(const PictureSource& source)
{
    m_task.start([this, source](std::stop_token stop) { return prepare(source, std::move(stop)); });
}

void CoverChoice::clear()
{
    m_task.cancel();
    m_picture.reset();
    emit changed();
}

async::Task<> CoverChoice::prepare(PictureSource source, std::stop_token stop)
{
    auto job = [source](const std::stop_token&) { return ChosenPicture::prepare(source); };
    std::optional<ChosenPicture> picture =
        co_await m_executor.run(async::Priority::UserInitiated, stop, std::move(job));
    if (!picture) {
        emit refused();
        co_return;
    }
    m_picture = std::move(picture);
    emit changed();
}
