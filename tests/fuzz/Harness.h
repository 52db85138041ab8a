#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Called with one input after the other, by libFuzzer or by the replay of the seeds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// What has to hold for every input. Ends the program where it does not, which is a finding.
inline void require(bool holds)
{
    if (!holds)
        std::abort();
}
