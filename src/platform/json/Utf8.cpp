#include "platform/json/Utf8.h"

#include <cstdint>
#include <cstring>

namespace Utf8 {

namespace {

/// The bytes that a character begun by \p lead has, and the bounds of the second one; a count of zero for no lead.
struct Form {
    int count = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xbf;
};

Form formOf(unsigned char lead)
{
    if (lead >= 0xc2 && lead <= 0xdf)
        return {2};
    if (lead >= 0xe0 && lead <= 0xef)
        return {3, static_cast<unsigned char>(lead == 0xe0 ? 0xa0 : 0x80),
                static_cast<unsigned char>(lead == 0xed ? 0x9f : 0xbf)};
    if (lead >= 0xf0 && lead <= 0xf4)
        return {4, static_cast<unsigned char>(lead == 0xf0 ? 0x90 : 0x80),
                static_cast<unsigned char>(lead == 0xf4 ? 0x8f : 0xbf)};
    return {};
}

} // namespace

bool isValid(QByteArrayView bytes)
{
    const auto* at = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto* const end = at + bytes.size();
    constexpr uint64_t kHighBits = 0x8080'8080'8080'8080;
    while (at != end) {
        if (end - at >= 8) { // mostly ASCII: eight bytes at a time
            uint64_t block = 0;
            std::memcpy(&block, at, sizeof block);
            if ((block & kHighBits) == 0) {
                at += sizeof block;
                continue;
            }
        }
        if (*at < 0x80) {
            ++at;
            continue;
        }
        const Form form = formOf(*at);
        if (form.count == 0 || end - at < form.count || at[1] < form.low || at[1] > form.high)
            return false;
        for (int i = 2; i < form.count; ++i) {
            if ((at[i] & 0xc0) != 0x80)
                return false;
        }
        at += form.count;
    }
    return true;
}

} // namespace Utf8
