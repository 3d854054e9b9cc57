#pragma once

#include <exception>

namespace async {

/// Thrown by every awaiter after a stop request, even when a result has arrived. Not an error: it is not reported.
class Cancelled : public std::exception {
public:
    const char* what() const noexcept override { return "cancelled"; }
};

} // namespace async
