// JSON as the tool prints it.
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

// For programs and people: what fits on a line stands on one. A byte that is no UTF-8, as where a field cuts a text in
// the middle of a character, becomes U+FFFD, and what printable() escapes is written as JSON's escape. Ends with a line
// end.
std::string jsonText(const Json &json);

// The type ids of an entry, of very many the first ones: "moreTypeIds" then says how many there are beside them.
void addTypeIds(Json &entry, const std::vector<uint32_t> &typeIds);

// The same text of an object whose arrays may be too long to be held in memory, printed while it is made. Beyond so
// many bytes, entries of arrays are left out.
class JsonStream {
public:
    JsonStream(const OwnOutput &output, size_t most) : output_(output), most_(most) {}

    void add(const char *name, Json value);
    void beginArray(const char *name);
    // False when there is no room for it.
    bool addEntry(Json entry);
    void endArray();
    // False when standard output takes no more.
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
    Json array_; // while that may
    bool isInArray_ = false;
    const char *arrayName_ = "";
    bool isArrayWhole_ = false;
    const char *separator_ = "{"; // before the next member
    const char *entrySeparator_ = "[";
    std::string text_; // what is not printed yet
    size_t size_ = 0;  // of all
};

} // namespace dcmtool

#endif
