// The steps of dcmCardInfoGet(), for those who have a parsed description at hand; the reporter is the query's.
#ifndef DCM_CARD_CARD_QUERY_H
#define DCM_CARD_CARD_QUERY_H

#include "common/xml.h"

#include <dcm.h>

namespace dcm {

// A record of which nothing has been read.
void clearCard(uint32_t typeId, uint32_t mode, DcmCardInfo &info);
// Its "name" and "abbrname". kept: a query takes those of every card that it passes on the way.
Result takeCardNames(Node card, DcmCardInfo &info, const Reporter &reporter);
// Reads what stands in a "card".
Result decodeCard(Node card, DcmCardInfo &info, const QueryReporter &reporter);

} // namespace dcm

#endif
