// The input is a description, or drives the generator of descriptions. It is fixed as far as that is certain: what is
// fixed is no longer found, nothing else is, every query that succeeded still does, and fixed again it stays as it is.
#include "tests/support/meaning.h"
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/fixer.h"

#include "fuzz/generator.h"
#include "fuzz/support.h"

#include <algorithm>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

using namespace dcmtool;

std::string textOf(const uint8_t *data, size_t size)
{
    // A description begins with a printable character, a blank or a byte order mark.
    if (size == 0 || data[0] >= 4)
        return {reinterpret_cast<const char *>(data), size};
    dcmfuzz::Input input(data, size);
    return dcmfuzz::Generator(input).make().text;
}

bool isCertain(const Finding &, const Fix &fix)
{
    return fix.confidence == Confidence::certain;
}

size_t countOf(const std::vector<Finding> &findings)
{
    size_t count = 0;
    for (const Finding &finding : findings)
        count += 1 + finding.more;
    return count;
}

size_t successesIn(const DescriptionFile &file)
{
    const std::vector<std::string> records = dcmtest::recordsOf(file);
    return static_cast<size_t>(std::count_if(
        records.begin(), records.end(), [](const std::string &record) { return record.compare(0, 3, "ok ") == 0; }));
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto file = DescriptionFile::parse("fuzz.xml", textOf(data, size));
    const std::vector<Finding> findings = checkFile(*file);
    for (const Finding &finding : findings)
        for (const Fix &fix : finding.fixes)
            DCM_FUZZ_CHECK(applyEdits(file->text(), fix.edits).has_value());
    const FixedFile fixed = applyFixes(*file, findings, isCertain);
    if (fixed.file == nullptr)
        return 0;
    DCM_FUZZ_CHECK(fixed.count > 0 && fixed.file->text() != file->text());
    DCM_FUZZ_CHECK(countOf(fixed.findings) + fixed.count <= countOf(findings));
    DCM_FUZZ_CHECK(successesIn(*fixed.file) >= successesIn(*file));
    DCM_FUZZ_CHECK(!fixed.isComplete || applyFixes(*fixed.file, checkFile(*fixed.file), isCertain).file == nullptr);
    return 0;
}
