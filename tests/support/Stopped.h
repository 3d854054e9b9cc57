#pragma once

#include <stop_token>

/// A token that was told to stop before anybody looked at it.
inline std::stop_token stoppedToken()
{
    std::stop_source source;
    source.request_stop();
    return source.get_token();
}
