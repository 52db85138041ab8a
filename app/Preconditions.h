#pragma once

#include <QString>

/// What has to be so before the application object is made, which ends the process roughly where
/// it is not. English: the language files are read later.
namespace Preconditions {

/// Asks the system for what can be had.
/// @return what is missing for good, for a person; null when nothing is.
QString establish(bool needsDisplay);

/// As long as it lives, what the toolkit cannot go on without is said on the error output and the
/// process ends with status 1: a user is told, no crash is reported.
class EndsWithMessage
{
public:
    EndsWithMessage();
    ~EndsWithMessage();
    Q_DISABLE_COPY_MOVE(EndsWithMessage)
};

} // namespace Preconditions
