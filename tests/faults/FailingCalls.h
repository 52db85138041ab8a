#pragma once

#include <atomic>
#include <functional>
#include <string>

/// Makes calls fail that change files in a folder, or in one below, for as long as it lives: of the
/// program that the shim is linked into, all its libraries included. One at a time.
class FailingCalls
{
public:
    /// @param number of the error, as errno says it
    /// @param isMeant asked about each call, by whichever thread makes it: how many there were with
    ///        it, and what and where it is, such as "rename /folder/name". A file without a name is
    ///        opened as "/folder/.".
    FailingCalls(int number, std::string folder,
                 std::function<bool(int count, const std::string &call)> isMeant);
    ~FailingCalls();
    FailingCalls(const FailingCalls &) = delete;
    FailingCalls &operator=(const FailingCalls &) = delete;

    /// For the shim.
    bool meet(const char *call, const std::string &path);
    const int error;

private:
    const std::string m_folder;
    const std::function<bool(int, const std::string &)> m_isMeant;
    std::atomic<int> m_calls = 0;
};
