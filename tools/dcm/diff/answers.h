// What the queries of a description answer: every query that a program on the network element may ask, once.
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

// What a query asks for. The mode is that of a card, and 0 of everything else; a port list has neither.
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
    size_t index; // of the element that it finds, among types()
};

// A record without what differs from query to query and what means nothing: the ids that were asked for are 0, and so
// is what lies behind the end of a card's names.
struct Answer {
    bool isDecoded = false;
    std::vector<uint8_t> bytes; // of the record
    const RecordTable *table = nullptr;
    std::string reports;               // all that the library reports
    std::vector<std::string> messages; // the first of them, for people

    Record record() const { return {*table, bytes.data()}; }
};
bool areSame(const Answer &before, const Answer &after);
// The bytes of such a record of which nothing has been read.
const void *clearedRecord(RecordKind kind);

// Where a side comes from, for those who want to read it again.
enum class Origin : uint8_t { file, revision, other };

// One side of a comparison.
class Side {
public:
    // The name that people know it by. The file is parsed under another one, which the library's messages repeat, so
    // that they are the same on both sides; it is nullptr of a side that describes nothing.
    Side(std::string name, Origin origin, std::unique_ptr<DescriptionFile> file);

    const std::string &name() const { return name_; }
    Origin origin() const { return origin_; }
    const DescriptionFile *file() const { return file_.get(); }
    const std::vector<DescribedType> &types() const { return types_; }
    // By kind and id.
    const std::vector<Query> &queries() const { return queries_; }
    // Of the queries that find types()[index].
    std::shared_ptr<const Answer> answer(size_t index);
    // What is written between the beginning of an element and that of the next.
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

    // kept: a query for a card takes the names of every card before it, of each name the last. The cards at and before
    // each of types() that have the last name and the last abbreviated name.
    struct Named {
        size_t name;
        size_t abbreviated;
    };
    std::vector<Named> named_;

    // The answers decoded last.
    std::unordered_map<size_t, std::shared_ptr<const Answer>> cache_;
    std::deque<size_t> cached_;
    size_t cachedBytes_ = 0;
};

} // namespace dcmtool

#endif
