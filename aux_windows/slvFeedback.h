#pragma once

#include "platform/ui/WindowController.h"

/// Leads to the product's feedback page.
class slvFeedback : public WindowController
{
    Q_OBJECT

public:
    slvFeedback();

    /// Traces the request in the log.
    Q_INVOKABLE void refresh();
};
