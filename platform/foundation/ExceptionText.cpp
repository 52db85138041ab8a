#include "platform/foundation/ExceptionText.h"

#include <exception>

using namespace Qt::StringLiterals;

QString currentExceptionText()
{
    try {
        throw;
    } catch (const std::exception &error) {
        return QString::fromLocal8Bit(error.what());
    } catch (...) {
        return u"unknown exception"_s;
    }
}
