#pragma once

#include "plugins/common/Card.h"
#include "plugins/common/Texts.h"

#include <vector>

/// What the host puts into the address of the feedback page.
struct SentFact
{
    QString name;
    QString value; ///< as it is sent, but for what an address needs
};

/// Read from the host at the moment of the call, in the order in which they are sent.
std::vector<SentFact> readSentFacts(mndCore *core, const Texts &texts);

/// A card that shows them, so that nobody sends anything unseen.
class SentFactsCard : public Card
{
public:
    SentFactsCard(mndCore *core, const Texts &texts);
};
