#pragma once

#include <plist/plist.h>

/// The binary form of a property list in XML.
inline QByteArray asBinary(const QByteArray &xml)
{
    plist_t root = nullptr;
    plist_from_xml(xml.constData(), uint32_t(xml.size()), &root);
    char *bytes = nullptr;
    uint32_t length = 0;
    plist_to_bin(root, &bytes, &length);
    const QByteArray result(bytes, length);
    plist_to_bin_free(bytes);
    plist_free(root);
    return result;
}
