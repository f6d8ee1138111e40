// The words of descriptions and reports.
#ifndef DCM_COMMON_VOCABULARIES_H
#define DCM_COMMON_VOCABULARIES_H

#include "common/vocabulary.h"

#include <dcm.h>

namespace dcm {

extern const Vocabulary kYesNoWords;
extern const Vocabulary kBitOrderWords;
extern const Vocabulary kDriverTypeWords;
extern const Vocabulary kInnerIfTypeWords;
extern const Vocabulary kWorkmodeWords;
extern const Vocabulary kConnectorWords;
extern const Vocabulary kPhyTypeWords;
extern const Vocabulary kOndTypeWords;
extern const Vocabulary kPortTypeWords;
extern const Vocabulary kPortTypeCapWords;
extern const Vocabulary kMemoryTypeWords;

extern const Vocabulary kCardSupportFuncWords;
extern const Vocabulary kLayerProtoCapWords;
extern const Vocabulary kTransceiverCapWords;
extern const Vocabulary kOpticalChnCapWords;
extern const Vocabulary kPoeStandardCapWords;
extern const Vocabulary kPoeInrushCapWords;

extern const Vocabulary kEttClassWords;
extern const Vocabulary kEttAttachWords;
extern const Vocabulary kLedFreqWords;
extern const Vocabulary kLedColorWords;
extern const Vocabulary kLedTypeWords;
extern const Vocabulary kTemperTypeWords;

// The words of the states of an LED type; nullptr for a type without states.
const Vocabulary *ledStateWords(uint32_t ledType);

} // namespace dcm

#endif
