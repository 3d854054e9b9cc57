#pragma once

#include <optional>

/// The error of this type that a call throws; nothing if it comes to its end. Others go on.
template <typename Error, typename Call>
std::optional<Error> thrown(const Call& call)
{
    try {
        call();
    } catch (const Error& error) {
        return error;
    }
    return std::nullopt;
}
