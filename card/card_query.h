// The steps of dcmCardInfoGet() for a description that is already parsed; the reporter is that of the query.
#ifndef DCM_CARD_CARD_QUERY_H
#define DCM_CARD_CARD_QUERY_H

#include "common/xml.h"

#include <dcm.h>

namespace dcm {

// Clears a record and sets its defaults.
void clearCard(uint32_t typeId, uint32_t mode, DcmCardInfo &info);
// Stores "name" and "abbrname". kept: a query does so for every card up to the wanted one.
Result takeCardNames(Node card, DcmCardInfo &info, const Reporter &reporter);
// Decodes a "card".
Result decodeCard(Node card, DcmCardInfo &info, const QueryReporter &reporter);

} // namespace dcm

#endif
