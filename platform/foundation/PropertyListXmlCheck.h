#pragma once

#include <QString>

/// Looks over the XML form of a property list before libplist reads it. libplist keeps a path of
/// every open element, frees recursively, and turns unreadable numbers and dates into zeros.
namespace PropertyListXmlCheck {

/// Null when the document is well formed, within the limits and made of property-list elements;
/// else what is wrong and in which line.
QString problem(const QString &document);

} // namespace PropertyListXmlCheck
