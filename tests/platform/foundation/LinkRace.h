#pragma once

#include "tests/platform/foundation/FileTree.h"

#include <cstdio>

/// Puts links that lead elsewhere in the place of what is being removed, from a thread of its own.
/// Nothing elsewhere may be touched. SOLVANE_TEST_SWAPS says how many links there are to be at
/// least, with a fourth as many removals; 100000 take minutes.
class LinkRace
{
public:
    LinkRace()
    {
        for (int i = 0; i < files; ++i)
            makeFile(m_elsewhere.text(std::to_string(i)), "kept");
    }

    std::string folderElsewhere() const { return m_elsewhere.path(); }
    std::string fileElsewhere() const { return m_elsewhere.path("0"); }

    enum Swap { NotDone, TakenBack, Removed };

    /// @param swap puts a link in place, takes it back, and answers whether it was still there.
    /// @param remove makes something new and removes it; answers whether that succeeded.
    void run(const std::function<Swap()> &swap, const std::function<bool()> &remove)
    {
        const int wanted = std::max(qEnvironmentVariableIntValue("SOLVANE_TEST_SWAPS"), 2000);
        std::atomic<int> swaps = 0;
        std::atomic<bool> stop = false;
        int met = 0;
        std::thread swapper([&] {
            while (!stop) {
                const Swap done = swap();
                swaps += done != NotDone;
                met += done == Removed;
            }
        });
        int removals = 0;
        int succeeded = 0;
        for (; swaps < wanted || removals < wanted / 4; ++removals)
            succeeded += remove();
        stop = true;
        swapper.join();
        std::printf("%d swaps, %d removals, %d of them successful, %d links removed\n",
                    swaps.load(), removals, succeeded, met);
        EXPECT_GT(met, 0) << "they never met";
        for (int i = 0; i < files; ++i)
            EXPECT_EQ(fileContent(m_elsewhere.text(std::to_string(i))), "kept") << i;
    }

private:
    static constexpr int files = 20;
    const FileTree m_elsewhere;
};
