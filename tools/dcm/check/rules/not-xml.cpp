#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void notXml(const DescriptionFile &file, const std::vector<DescribedType> &, Findings &findings)
{
    if (file.state() == DescriptionFile::State::notXml)
        findings.at(nullptr, file.faultSpan(), file.fault() + ": every query fails");
}

} // namespace

extern constexpr Rule kNotXml = {"not-xml", Severity::error, onFile(notXml)};

} // namespace dcmtool
