#pragma once

#include "tests/platform/foundation/FileTree.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <fstream>
#include <functional>
#include <sstream>
#include <thread>

/// Puts links that lead elsewhere in the place of what is being removed, from a thread of its own.
/// Nothing elsewhere may be touched. SOLVANE_TEST_SWAPS says how many links there are to be.
class LinkRace
{
public:
    LinkRace()
    {
        for (int i = 0; i < files; ++i)
            std::ofstream(m_elsewhere.path(std::to_string(i))) << "kept";
    }

    std::string folderElsewhere() const { return m_elsewhere.path(); }
    std::string fileElsewhere() const { return m_elsewhere.path("0"); }

    /// @param swap puts a link in place, takes it away, and answers whether it was gone by then.
    /// @param remove makes something new and removes it; answers whether that succeeded.
    void run(const std::function<bool()> &swap, const std::function<bool()> &remove)
    {
        const int wanted = std::max(qEnvironmentVariableIntValue("SOLVANE_TEST_SWAPS"), 3000);
        std::atomic<int> swaps = 0;
        int met = 0;
        std::thread swapper([&] {
            for (; swaps < wanted; ++swaps)
                met += swap();
        });
        int removals = 0;
        int succeeded = 0;
        for (; swaps < wanted; ++removals)
            succeeded += remove();
        swapper.join();
        std::printf("%d swaps, %d removals, %d of them successful, %d links removed\n", wanted,
                    removals, succeeded, met);
        EXPECT_GT(met, 0) << "they never met";
        for (int i = 0; i < files; ++i) {
            std::stringstream content;
            content << std::ifstream(m_elsewhere.path(std::to_string(i))).rdbuf();
            EXPECT_TRUE(content.str() == "kept") << i;
        }
    }

private:
    static constexpr int files = 20;
    const FileTree m_elsewhere;
};
