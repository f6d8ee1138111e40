// The input is a description, or controls the generator of descriptions, to whose text other blanks and comments are
// added. It is formatted: every query has the same result, comments and findings are the same, and formatting it again
// changes nothing.
#include "tests/support/meaning.h"
#include "tools/dcm/check/findings.h"
#include "tools/dcm/description/edits.h"
#include "tools/dcm/description/layout.h"

#include "fuzz/generator.h"
#include "fuzz/support.h"

#include <algorithm>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

using dcmtool::DescriptionFile;
using dcmtool::LaidOut;
using dcmtool::Layout;

std::string textOf(const uint8_t *data, size_t size)
{
    // A description begins with a printable character, a blank or a byte order mark.
    if (size == 0 || data[0] >= 4)
        return {reinterpret_cast<const char *>(data), size};
    dcmfuzz::Input input(data, size);
    std::mt19937 random(static_cast<uint32_t>(size));
    return dcmtest::scrambled(dcmfuzz::Generator(input).make().text, random);
}

// Where much makes a query fail, how far the search for it gets depends on how much text there is. The finding that
// says so may be one too many.
bool hasSearchEnded(const std::vector<std::string> &findings)
{
    const auto failures = std::count_if(findings.begin(), findings.end(), [](const std::string &finding) {
        return finding.rfind("query-fails ", 0) == 0;
    });
    return failures >= static_cast<ptrdiff_t>(dcmtool::Findings::kMostOfRule) ||
           std::any_of(findings.begin(), findings.end(), [](const std::string &finding) {
               return finding.find("the search for it has ended") != std::string::npos;
           });
}

bool isLikeIn(const DescriptionFile &file, const std::string &text, Layout layout)
{
    const auto other = DescriptionFile::parse(file.name(), text);
    DCM_FUZZ_CHECK(layOut(*other, layout).text == text);
    if (dcmtest::recordsOf(*other) != dcmtest::recordsOf(file))
        return false;
    if (layout == Layout::image)
        return true;
    const std::vector<std::string> before = dcmtest::findingsOf(file);
    const std::vector<std::string> after = dcmtest::findingsOf(*other);
    return dcmtest::commentsOf(text) == dcmtest::commentsOf(file.text()) &&
           (hasSearchEnded(before) || hasSearchEnded(after) || after == before);
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto file = DescriptionFile::parse("fuzz.xml", textOf(data, size));
    const LaidOut lines = layOut(*file, Layout::lines);
    const bool isDescription = dcmtool::faultOfEditing(*file).empty() && (file->isDevice() || file->isVm());
    DCM_FUZZ_CHECK(lines.fault.empty() == isDescription);
    if (!isDescription)
        return 0;
    DCM_FUZZ_CHECK(isLikeIn(*file, lines.text, Layout::lines));
    // Where a comment is in a value, it may part what would else be one line end or the end of a section.
    const LaidOut image = layOut(*file, Layout::image);
    DCM_FUZZ_CHECK(image.fault.empty() || image.fault == "its content would change");
    DCM_FUZZ_CHECK(!image.fault.empty() || isLikeIn(*file, image.text, Layout::image));
    return 0;
}
