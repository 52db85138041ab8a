#pragma once

#include <QString>

/// Where the product lives on the web. Build options override them; the defaults lie under a domain
/// that is reserved for examples (RFC 2606).
namespace ProductAddresses {

#ifndef SOLVANE_HOME_PAGE
#define SOLVANE_HOME_PAGE "http://www.solvane.example"
#endif
#ifndef SOLVANE_SUPPORT_PAGE
#define SOLVANE_SUPPORT_PAGE "https://www.solvane.example/support"
#endif
#ifndef SOLVANE_SUPPORT_MAIL
#define SOLVANE_SUPPORT_MAIL "support@solvane.example"
#endif

inline QString homePage()
{
    return QStringLiteral(SOLVANE_HOME_PAGE);
}

inline QString support()
{
    return QStringLiteral(SOLVANE_SUPPORT_PAGE);
}

inline QString supportMail()
{
    return QStringLiteral(SOLVANE_SUPPORT_MAIL);
}

} // namespace ProductAddresses
