// Which words each converter reads.
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
extern const Vocabulary kLedFreqWords;
extern const Vocabulary kLedColorWords;
extern const Vocabulary kLedTypeWords;
extern const Vocabulary kTemperTypeWords;

// The state words of an LED type; nullptr for a type that has none.
const Vocabulary *ledStateWords(uint32_t ledType);

using Converter = int (*)(const unsigned char *text, uint32_t *value);

template <Converter converter> constexpr const Vocabulary *wordsOf = nullptr;
template <> inline constexpr const Vocabulary *wordsOf<dcmYesNoStr2Val> = &kYesNoWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmBitOrderStr2Val> = &kBitOrderWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmDriverTypeStr2Val> = &kDriverTypeWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmInnerIfTypeStr2Val> = &kInnerIfTypeWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmWorkmodeStr2Val> = &kWorkmodeWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmPortConnectorStr2Val> = &kConnectorWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmPortTypeStr2Val> = &kPortTypeWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmPortTypeCapStr2Val> = &kPortTypeCapWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmMemoryTypeStr2Val> = &kMemoryTypeWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmCardSupportFuncStr2Val> = &kCardSupportFuncWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmPortLayerProtoCapStr2Val> = &kLayerProtoCapWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmPortTransceiverCapStr2Val> = &kTransceiverCapWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmPortOpticalChnCapStr2Val> = &kOpticalChnCapWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmPortPoeStandardCapStr2Val> = &kPoeStandardCapWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmPortPoeInrushCapStr2Val> = &kPoeInrushCapWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmEttClassStr2Val> = &kEttClassWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmLedFreqStr2Val> = &kLedFreqWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmLedColorStr2Val> = &kLedColorWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmLedTypeStr2Val> = &kLedTypeWords;
template <> inline constexpr const Vocabulary *wordsOf<dcmTemperTypeStr2Val> = &kTemperTypeWords;

} // namespace dcm

#endif
