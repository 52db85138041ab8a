#pragma once

#include <QObject>

/// A panel of fixed size that slides out of an edge of the main window.
///
/// Made by the host, unopened; the caller owns it and may delete it at any moment. The content is
/// the caller's, too: borrowed while the drawer lives, given back hidden. A drawer whose content or
/// window is gone opens nothing. Main thread only.
class Drawer : public QObject
{
public:
    using QObject::QObject;

    virtual void open() = 0;
    virtual void close() = 0;
    virtual void toggle() = 0;
    virtual bool isOpen() const = 0;
};
