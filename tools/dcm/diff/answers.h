// The answers of a description to all queries that it supports.
#ifndef DCM_TOOLS_ANSWERS_H
#define DCM_TOOLS_ANSWERS_H

#include "tools/dcm/description/description_file.h"
#include "tools/dcm/records/record.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace dcmtool {

// The parameters of a query. Only cards have a mode; a port list has neither type nor mode.
struct QueryId {
    uint32_t type = 0;
    uint32_t mode = 0;

    friend bool operator<(const QueryId &left, const QueryId &right)
    {
        return left.type != right.type ? left.type < right.type : left.mode < right.mode;
    }
    friend bool operator==(const QueryId &left, const QueryId &right)
    {
        return left.type == right.type && left.mode == right.mode;
    }
};

struct Query {
    RecordKind kind;
    QueryId id;
    size_t index; // of the element that it finds, in types()
};

// A record without the parts that depend on the query or are not significant: the requested ids are 0, and so are the
// bytes after the end of a card's names.
struct Answer {
    bool isDecoded = false;
    std::vector<uint8_t> bytes; // of the record
    const RecordTable *table = nullptr;
    std::string reports;               // all reports of the library
    std::vector<std::string> messages; // the first ones, for people

    Record record() const { return {*table, bytes.data()}; }
};
bool areSame(const Answer &before, const Answer &after);
// The bytes of a cleared record of this kind.
const void *clearedRecord(RecordKind kind);

// The source of a side, so that another process can read it again.
enum class Origin : uint8_t { file, revision, other };

// One side of a comparison.
class Side {
public:
    // The name for people. The file is parsed under a fixed name, because the library's messages repeat it and must be
    // the same on both sides. nullptr for a side without a description.
    Side(std::string name, Origin origin, std::unique_ptr<DescriptionFile> file);

    const std::string &name() const { return name_; }
    Origin origin() const { return origin_; }
    const DescriptionFile *file() const { return file_.get(); }
    const std::vector<DescribedType> &types() const { return types_; }
    // By kind and id.
    const std::vector<Query> &queries() const { return queries_; }
    // Of the queries that find types()[index].
    std::shared_ptr<const Answer> answer(size_t index);
    // The text of an element.
    std::string_view textOf(size_t index) const;

private:
    template <class Info> std::shared_ptr<Answer> decode(size_t index) const;
    void takeCarriedNames(size_t index, DcmCardInfo &info) const;
    void findNames();

    std::string name_;
    Origin origin_;
    std::unique_ptr<DescriptionFile> file_;
    std::vector<DescribedType> types_;
    std::vector<Query> queries_;

    // kept: a query for a card takes the names of every card before it, and of each name the last one. For each of
    // types(), the cards up to it that have the last name and the last abbreviated name.
    struct Named {
        size_t name;
        size_t abbreviated;
    };
    std::vector<Named> named_;

    // The answers decoded most recently.
    std::unordered_map<size_t, std::shared_ptr<const Answer>> cache_;
    std::deque<size_t> cached_;
    size_t cachedBytes_ = 0;
};

} // namespace dcmtool

#endif
