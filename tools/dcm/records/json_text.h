// The layout of the tool's JSON.
#ifndef DCM_TOOLS_JSON_TEXT_H
#define DCM_TOOLS_JSON_TEXT_H

#include "tools/dcm/own_output.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace dcmtool {

using Json = nlohmann::ordered_json;

// A value that fits is on one line. A byte that is not UTF-8, such as where a field cuts a text in the middle of a
// character, becomes U+FFFD, and the characters that printable() escapes get JSON's escapes. Ends with a line end.
std::string jsonText(const Json &json);

// The type ids of an entry; of very many only the first ones, and "moreTypeIds" is the number of the others.
void addTypeIds(Json &entry, const std::vector<uint32_t> &typeIds);

// The same text for an object whose arrays may be too long for memory: it is printed while it is built. Beyond this
// number of bytes, entries of arrays are left out.
class JsonStream {
public:
    JsonStream(const OwnOutput &output, size_t most) : output_(output), most_(most) {}

    void add(const char *name, Json value);
    void beginArray(const char *name);
    // False if there is no space left for it.
    bool addEntry(Json entry);
    void endArray();
    // False when standard output cannot be written.
    bool end();

private:
    void beginMember(const char *name);
    void spill();
    void spillArray();
    void appendEntry(const Json &entry);
    void flush(size_t least);

    const OwnOutput &output_;
    size_t most_;
    bool isPrinted_ = true;
    Json whole_ = Json::object(); // while all of it may fit on a line
    bool isWhole_ = true;
    Json array_; // while it may fit on a line
    bool isInArray_ = false;
    const char *arrayName_ = "";
    bool isArrayWhole_ = false;
    const char *separator_ = "{"; // before the next member
    const char *entrySeparator_ = "[";
    std::string text_; // not printed yet
    size_t size_ = 0;  // of the whole text
};

} // namespace dcmtool

#endif
