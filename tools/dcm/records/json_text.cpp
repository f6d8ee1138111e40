#include "tools/dcm/records/json_text.h"

#include "tools/dcm/printable.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace dcmtool {

namespace {

constexpr size_t kLineWidth = 120;
constexpr size_t kStep = 2;

// Nearly all values are numbers and short plain words.
std::string scalar(const Json &json)
{
    if (json.is_number_unsigned())
        return std::to_string(json.get<uint64_t>());
    if (json.is_string()) {
        const auto &text = json.get_ref<const std::string &>();
        const auto isPlain = [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; };
        if (std::all_of(text.begin(), text.end(), isPlain))
            return '"' + text + '"';
    }
    return printableJson(json.dump(-1, ' ', false, Json::error_handler_t::replace));
}

// Appends a value without line ends while the text stays within `end`; false if it does not.
bool appendOnOneLine(std::string &text, const Json &json, size_t end)
{
    if (!json.is_structured()) {
        // A long text is not even scanned.
        if (!json.is_string() || text.size() + json.get_ref<const std::string &>().size() <= end)
            text += scalar(json);
        else
            return false;
        return text.size() <= end;
    }
    const bool isObject = json.is_object();
    const char *separator = isObject ? "{" : "[";
    for (const auto &item : json.items()) {
        text += separator;
        separator = ",";
        if (isObject)
            text.append(1, '"').append(item.key()).append("\":");
        if (!appendOnOneLine(text, item.value(), end))
            return false;
    }
    text += json.empty() ? (isObject ? "{}" : "[]") : isObject ? "}" : "]";
    return text.size() <= end;
}

// `lineStart` is where the last line of the text begins.
void append(std::string &text, size_t lineStart, const Json &json, size_t indent)
{
    const size_t start = text.size();
    if (appendOnOneLine(text, json, lineStart + kLineWidth))
        return;
    text.resize(start);
    if (!json.is_structured()) {
        text += scalar(json);
        return;
    }
    const bool isObject = json.is_object();
    const char *separator = isObject ? "{" : "[";
    for (const auto &item : json.items()) {
        text.append(separator).append("\n");
        lineStart = text.size();
        text.append(indent + kStep, ' ');
        if (isObject)
            text.append(1, '"').append(item.key()).append("\": ");
        append(text, lineStart, item.value(), indent + kStep);
        separator = ",";
    }
    text.append("\n").append(indent, ' ').append(isObject ? "}" : "]");
}

} // namespace

std::string jsonText(const Json &json)
{
    std::string text;
    append(text, 0, json, 0);
    text += '\n';
    return text;
}

void addTypeIds(Json &entry, const std::vector<uint32_t> &typeIds)
{
    constexpr size_t kMost = 1000;
    Json &shown = entry["typeIds"] = Json::array();
    for (size_t i = 0; i < std::min(typeIds.size(), kMost); i++)
        shown.push_back(typeIds[i]);
    if (typeIds.size() > kMost)
        entry["moreTypeIds"] = typeIds.size() - kMost;
}

// ---- Streaming ------------------------------------------------------------------------------------------------------

namespace {

constexpr size_t kBlock = size_t{1} << 16;

// Whether a value fits on a line of its own.
bool isShort(const Json &json)
{
    std::string text;
    return appendOnOneLine(text, json, kLineWidth);
}

} // namespace

void JsonStream::add(const char *name, Json value)
{
    if (isWhole_) {
        whole_[name] = std::move(value);
        return;
    }
    beginMember(name);
    append(text_, text_.rfind('\n') + 1, value, kStep);
}

void JsonStream::beginArray(const char *name)
{
    isInArray_ = true;
    arrayName_ = name;
    isArrayWhole_ = true;
    array_ = Json::array();
    if (isWhole_)
        whole_[name] = array_;
    else
        beginMember(name);
}

bool JsonStream::addEntry(Json entry)
{
    if (isWhole_) {
        whole_[arrayName_].push_back(std::move(entry));
        if (!isShort(whole_))
            spill();
        return true;
    }
    if (isArrayWhole_) {
        array_.push_back(std::move(entry));
        if (!isShort(array_))
            spillArray();
        return true;
    }
    const size_t before = text_.size();
    appendEntry(entry);
    if (size_ + text_.size() > most_) {
        text_.resize(before);
        return false;
    }
    flush(kBlock);
    return true;
}

void JsonStream::endArray()
{
    isInArray_ = false;
    if (isWhole_)
        return;
    if (isArrayWhole_)
        append(text_, text_.rfind('\n') + 1, array_, kStep);
    else
        text_.append("\n").append(kStep, ' ').append("]");
}

bool JsonStream::end()
{
    if (isWhole_)
        text_ = jsonText(whole_);
    else
        text_ += "\n}\n";
    // Destroying a JSON value may allocate; if that fails, nothing may have been printed yet.
    whole_ = nullptr;
    array_ = nullptr;
    flush(0);
    return isPrinted_;
}

void JsonStream::beginMember(const char *name)
{
    text_.append(separator_).append("\n").append(kStep, ' ').append("\"").append(name).append("\": ");
    separator_ = ",";
}

// It is too long for one line: the members so far are printed one by one.
void JsonStream::spill()
{
    isWhole_ = false;
    const Json members = std::move(whole_);
    size_t left = members.size();
    for (const auto &member : members.items()) {
        beginMember(member.key().c_str());
        if (--left > 0 || !isInArray_)
            append(text_, text_.rfind('\n') + 1, member.value(), kStep);
        else if (array_ = member.value(); !isShort(array_))
            spillArray();
    }
}

void JsonStream::spillArray()
{
    isArrayWhole_ = false;
    entrySeparator_ = "[";
    const Json entries = std::move(array_);
    for (const Json &entry : entries)
        appendEntry(entry);
}

void JsonStream::appendEntry(const Json &entry)
{
    text_.append(entrySeparator_).append("\n");
    entrySeparator_ = ",";
    const size_t lineStart = text_.size();
    text_.append(2 * kStep, ' ');
    append(text_, lineStart, entry, 2 * kStep);
}

void JsonStream::flush(size_t least)
{
    if (text_.size() < least)
        return;
    isPrinted_ = isPrinted_ && output_.print(text_);
    size_ += text_.size();
    text_.clear();
}

} // namespace dcmtool
