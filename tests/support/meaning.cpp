#include "tests/support/meaning.h"

#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/markup.h"
#include "tools/dcm/description/parse_limits.h"

#include <cstring>
#include <iterator>
#include <memory>

namespace dcmtest {

using namespace dcmtool;

namespace {

template <class Record> std::string recordOf(const DescriptionFile &file, const DescribedType &type)
{
    const auto record = std::make_unique<Record>();
    std::memset(record.get(), 0, sizeof(Record));
    const Outcome outcome = file.decode(type, *record);
    std::string text = outcome.isDecoded ? "ok " : "failed ";
    for (const Message &message : outcome.messages)
        text += message.text;
    return text.append(reinterpret_cast<const char *>(record.get()), sizeof(Record));
}

} // namespace

std::vector<std::string> recordsOf(const DescriptionFile &file)
{
    std::vector<std::string> records;
    for (const DescribedType &type : file.types()) {
        switch (type.kind) {
        case RecordKind::frame:
            records.push_back(recordOf<DcmFrameInfo>(file, type));
            break;
        case RecordKind::slot:
            records.push_back(recordOf<DcmSlotInfo>(file, type));
            break;
        case RecordKind::card:
            records.push_back(recordOf<DcmCardInfo>(file, type));
            break;
        case RecordKind::vm:
            records.push_back(recordOf<DcmVmPortInfo>(file, type));
            break;
        }
    }
    return records;
}

std::vector<std::string> findingsOf(const DescriptionFile &file)
{
    std::vector<std::string> findings;
    for (const Finding &finding : checkFile(file))
        findings.push_back(std::string(finding.rule->name) + " " + finding.path + ": " + finding.text + " " +
                           finding.meant);
    return findings;
}

std::vector<std::string> commentsOf(const std::string &text)
{
    std::vector<std::string> comments;
    for (const Markup &piece : markupOf(text))
        if (piece.kind == MarkupKind::comment)
            comments.emplace_back(cut(text, piece.span));
    return comments;
}

std::string scrambled(const std::string &text, std::mt19937 &random)
{
    static constexpr const char *kGaps[] = {
        "", " ", "\n", "\r\n", "\n\n\n", "\t", "<!-- c -->", " <!--\n  d\n-->\n", "\n<!-- e -->\n"};
    const std::vector<Markup> pieces = markupOf(text);
    FormatPosition position;
    std::string result;
    for (size_t i = 0; i < pieces.size(); i++) {
        const std::string_view bytes = cut(text, pieces[i].span);
        const bool isLayout = pieces[i].kind == MarkupKind::text && isBlank(bytes) && position.isInContainer();
        if (!isLayout)
            result += bytes;
        if (pieces[i].kind == MarkupKind::startTag)
            position.enter(std::string(bytes.substr(1, nameEnd(bytes, 1) - 1)).c_str());
        else if (pieces[i].kind == MarkupKind::endTag)
            position.leave();
        if (position.isInContainer() && (i + 1 == pieces.size() || pieces[i + 1].kind != MarkupKind::text || isLayout))
            for (size_t count = random() % 3; count > 0; count--)
                result += kGaps[random() % std::size(kGaps)];
    }
    return result;
}

} // namespace dcmtest
