// The input is a description, which is checked: every query runs on it, the causes of failing queries are found, and
// all findings are printed.
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/output.h"

#include "fuzz/support.h"

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    dcmtool::FileReport report;
    report.file = dcmtool::DescriptionFile::parse("fuzz.xml", std::string(reinterpret_cast<const char *>(data), size));
    report.findings = dcmtool::checkFile(*report.file);
    // Positions are inside the file and in its order.
    size_t last = 0;
    for (const dcmtool::Finding &finding : report.findings) {
        DCM_FUZZ_CHECK(finding.span.begin <= finding.span.end && finding.span.end <= report.file->text().size());
        DCM_FUZZ_CHECK(finding.span.begin >= last);
        last = finding.span.begin;
    }
    const std::string text = dcmtool::asText(report, {false, true});
    DCM_FUZZ_CHECK(text.empty() == report.findings.empty());
    return 0;
}
