#pragma once

#include "platform/Localization.h"

#include <atomic>
#include <thread>
#include <vector>

namespace LanguageSwitching {

/// Looks on several threads at once while this one switches between the languages. Russian is left.
template <typename Look>
void whileOthersSwitch(const Look& look)
{
    std::atomic<int> running = 3;
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 3; ++thread) {
        threads.emplace_back([&] {
            for (int round = 0; round < 2000; ++round)
                look();
            --running;
        });
    }
    for (int i = 0; running > 0; ++i)
        VelmoraLocalization::setLanguage(i % 2 ? AppLanguage::Russian : AppLanguage::English);
    threads.clear();
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
}

} // namespace LanguageSwitching
