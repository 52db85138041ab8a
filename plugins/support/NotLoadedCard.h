#pragma once

#include "plugins/common/Card.h"
#include "plugins/common/Texts.h"

class QGridLayout;

/// A card that names every bundle that was refused or left out, and says why. Hidden while there is
/// none.
class NotLoadedCard : public Card
{
public:
    /// @param core the host; may be null.
    NotLoadedCard(mndCore *core, const Texts &texts);

    /// Asks the host anew.
    void refresh();

private:
    mndCore *m_core;
    Texts m_texts;
    QGridLayout *m_grid;
};
