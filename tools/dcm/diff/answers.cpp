#include "tools/dcm/diff/answers.h"

#include "card/card.h"
#include "frame/frame.h"
#include "slot/slot.h"
#include "tools/dcm/description/markup.h"
#include "tools/dcm/diff/changes.h"
#include "tools/dcm/library_log.h"

#include <algorithm>
#include <cstring>
#include <tuple>
#include <type_traits>
#include <utility>

namespace dcmtool {

namespace {

constexpr size_t kMostCached = size_t{64} << 20; // bytes
constexpr size_t kNoCard = SIZE_MAX;

template <class Info> void makeComparable(Info &info)
{
    if constexpr (!std::is_same_v<Info, DcmVmPortInfo>)
        info.type = 0;
    if constexpr (std::is_same_v<Info, DcmCardInfo>) {
        info.mode = 0;
        std::memset(info.name + info.nameLen, 0, sizeof info.name - info.nameLen);
        std::memset(info.abbrName + info.abbrNameLen, 0, sizeof info.abbrName - info.abbrNameLen);
    }
}

bool hasAttribute(Node element, const char *name)
{
    return static_cast<bool>(dcm::Text::attribute(element, name, {"dcm"}));
}

} // namespace

bool areSame(const Answer &before, const Answer &after)
{
    return before.isDecoded == after.isDecoded && before.reports == after.reports &&
           haveSameBytes(before.record(), after.record());
}

const void *clearedRecord(RecordKind kind)
{
    static const auto frame = [] {
        auto info = std::make_unique<DcmFrameInfo>();
        dcm::clearFrame(0, *info);
        return info;
    }();
    static const auto slot = [] {
        auto info = std::make_unique<DcmSlotInfo>();
        dcm::clearSlot(0, *info);
        return info;
    }();
    static const auto card = [] {
        auto info = std::make_unique<DcmCardInfo>();
        dcm::clearCard(0, 0, *info);
        return info;
    }();
    static const DcmVmPortInfo vm = {};
    switch (kind) {
    case RecordKind::frame:
        return frame.get();
    case RecordKind::slot:
        return slot.get();
    case RecordKind::card:
        return card.get();
    case RecordKind::vm:
        break;
    }
    return &vm;
}

Side::Side(std::string name, Origin origin, std::unique_ptr<DescriptionFile> file)
    : name_(std::move(name)), origin_(origin), file_(std::move(file))
{
    if (file_ == nullptr)
        return;
    types_ = file_->types();
    for (size_t i = 0; i < types_.size(); i++) {
        DescribedType &type = types_[i];
        if (type.kind == RecordKind::vm)
            queries_.push_back({type.kind, {}, i});
        for (const uint32_t id : type.typeIds)
            queries_.push_back({type.kind, {id, type.mode}, i});
    }
    const auto inOrder = [](const Query &left, const Query &right) {
        return std::tie(left.kind, left.id, left.index) < std::tie(right.kind, right.id, right.index);
    };
    std::sort(queries_.begin(), queries_.end(), inOrder);
    // A query finds the first match.
    const auto asksTheSame = [](const Query &left, const Query &right) {
        return left.kind == right.kind && left.id == right.id;
    };
    queries_.erase(std::unique(queries_.begin(), queries_.end(), asksTheSame), queries_.end());
    findNames();
}

void Side::findNames()
{
    Named last = {kNoCard, kNoCard};
    for (size_t i = 0; i < types_.size(); i++) {
        if (types_[i].kind == RecordKind::card) {
            last.name = hasAttribute(types_[i].element, "name") ? i : last.name;
            last.abbreviated = hasAttribute(types_[i].element, "abbrname") ? i : last.abbreviated;
        }
        named_.push_back(last);
    }
}

void Side::takeCarriedNames(size_t index, DcmCardInfo &info) const
{
    DcmCardInfo names;
    dcm::clearCard(0, 0, names);
    const Named &from = named_[index];
    for (const size_t card : {std::min(from.name, from.abbreviated), std::max(from.name, from.abbreviated)})
        if (card != kNoCard)
            static_cast<void>(dcm::takeCardNames(types_[card].element, names, dcm::Reporter{"dcmCardInfoGet"}));
    std::memcpy(info.name, names.name, sizeof info.name);
    std::memcpy(info.abbrName, names.abbrName, sizeof info.abbrName);
    info.nameLen = names.nameLen;
    info.abbrNameLen = names.abbrNameLen;
}

template <class Info> std::shared_ptr<Answer> Side::decode(size_t index) const
{
    auto answer = std::make_shared<Answer>();
    answer->table = &tableOf<Info>();
    answer->bytes.resize(sizeof(Info));
    auto &info = *reinterpret_cast<Info *>(answer->bytes.data());
    {
        std::vector<std::string> reports;
        const ReportCapture capture(reports);
        Outcome outcome = file_->decode(types_[index], info);
        answer->isDecoded = outcome.isDecoded;
        for (const std::string &report : reports)
            answer->reports += report;
        for (Message &message : outcome.messages)
            answer->messages.push_back(std::move(message.text));
    }
    if constexpr (std::is_same_v<Info, DcmCardInfo>)
        takeCarriedNames(index, info);
    makeComparable(info);
    return answer;
}

std::shared_ptr<const Answer> Side::answer(size_t index)
{
    if (const auto found = cache_.find(index); found != cache_.end())
        return found->second;
    std::shared_ptr<const Answer> answer;
    switch (types_[index].kind) {
    case RecordKind::frame:
        answer = decode<DcmFrameInfo>(index);
        break;
    case RecordKind::slot:
        answer = decode<DcmSlotInfo>(index);
        break;
    case RecordKind::card:
        answer = decode<DcmCardInfo>(index);
        break;
    case RecordKind::vm:
        answer = decode<DcmVmPortInfo>(index);
        break;
    }
    const auto sizeOf = [](const Answer &kept) { return kept.bytes.size() + kept.reports.size(); };
    cachedBytes_ += sizeOf(*answer);
    while (cachedBytes_ > kMostCached && !cached_.empty()) {
        const auto oldest = cache_.find(cached_.front());
        cachedBytes_ -= sizeOf(*oldest->second);
        cache_.erase(oldest);
        cached_.pop_front();
    }
    cache_.emplace(index, answer);
    cached_.push_back(index);
    return answer;
}

std::string_view Side::textOf(size_t index) const
{
    const std::string_view text = file_->text();
    const Span tag = file_->tagSpan(types_[index].element);
    const std::string_view written = cut(text, tag);
    const bool hasEndTag = written.size() > 2 && written.front() == '<' && written.substr(written.size() - 2) != "/>";
    if (!hasEndTag)
        return written;
    size_t left = text.size();
    const size_t end = endTagOf(text, tag.begin, left);
    return cut(text, {tag.begin, std::min(end, text.size())});
}

} // namespace dcmtool
