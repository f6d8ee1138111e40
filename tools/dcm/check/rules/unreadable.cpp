#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void unreadable(const DescriptionFile &file, const std::vector<DescribedType> &, Findings &findings)
{
    if (file.state() == DescriptionFile::State::unreadable)
        findings.at(nullptr, {}, "cannot be read: " + file.fault());
}

} // namespace

extern constexpr Rule kUnreadable = {"unreadable", Severity::error, onFile(unreadable)};

} // namespace dcmtool
