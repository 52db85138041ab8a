#pragma once

#include <QString>

/// What the exception being handled says of itself. Only inside a catch block.
QString currentExceptionText();
