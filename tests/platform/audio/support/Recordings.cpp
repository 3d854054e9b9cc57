#include "support/Recordings.h"

#include <algorithm>
#include <cmath>
#include <sstream>

size_t Recordings::firstDifference(const std::vector<float>& one, const std::vector<float>& other)
{
    const size_t count = std::min(one.size(), other.size());
    for (size_t index = 0; index < count; ++index) {
        if (!(std::abs(one[index] - other[index]) <= kQuantisationStep))
            return index;
    }
    return count;
}

std::vector<float> Recordings::withoutSilenceInFront(const std::vector<float>& samples)
{
    return {std::ranges::find_if(samples, [](float sample) { return sample != 0; }), samples.end()};
}

std::string Recordings::describeDifference(const std::vector<float>& heard, const std::vector<float>& expected,
                                           int sampleRate)
{
    constexpr ptrdiff_t kWindow = 200;
    const auto second = static_cast<ptrdiff_t>(sampleRate);
    const auto part = static_cast<ptrdiff_t>(firstDifference(heard, expected));
    std::ostringstream text;
    text << "parts at " << static_cast<double>(part) / sampleRate << " s";
    const ptrdiff_t look = part + second; // where things are in order again, but for the shift
    const auto from = std::max<ptrdiff_t>(0, look - 3 * second);
    const auto until = std::min<ptrdiff_t>(look + 3 * second, std::ssize(expected) - kWindow);
    if (look + kWindow > std::ssize(heard))
        return text.str();
    for (ptrdiff_t place = from; place < until; ++place) {
        if (!std::equal(heard.begin() + look, heard.begin() + look + kWindow, expected.begin() + place))
            continue;
        const auto silent = std::count(heard.begin() + part, heard.begin() + look, 0.0F);
        text << ", a second later it is " << place - look << " frames ahead; " << silent << " silent frames between";
        return text.str();
    }
    text << " and is not found again within three seconds";
    return text.str();
}
