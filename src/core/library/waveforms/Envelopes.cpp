#include "core/library/waveforms/Envelopes.h"

async::Task<bool> Envelopes::prepare(QUrl, std::stop_token)
{
    co_return false;
}

Envelopes& Envelopes::none()
{
    static Envelopes envelopes;
    return envelopes;
}
