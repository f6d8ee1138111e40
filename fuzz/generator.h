// Generates descriptions from the library's decoder tables: the input determines the elements, their contents and their
// faults.
#ifndef DCM_FUZZ_GENERATOR_H
#define DCM_FUZZ_GENERATOR_H

#include "common/format.h"
#include "fuzz/support.h"

#include <string>

namespace dcmfuzz {

enum class Query { frame, slot, card, vm };

struct Description {
    std::string text;
    Query query = Query::frame; // that finds an element in it
    uint32_t typeId = 0;
    uint32_t mode = 0;
};

class Generator {
public:
    explicit Generator(Input &input) : input_(input) {}
    Description make();

private:
    // Values from the enclosing elements.
    struct Scope {
        uint32_t announced = 0; // "num"
        uint32_t nextId = 1;
        uint32_t ledType = 0;
        uint32_t sourceType = 0;
    };
    enum class Place { content, attribute };

    void root(const char *name, const dcm::Element &element);
    void element(const std::string &name, const dcm::Element &element, Scope &parent, int depth);
    void attributes(const std::string &name, const dcm::Element &element, Scope &parent, Scope &scope);
    void children(const dcm::Element &element, Scope &scope, int depth);
    void repeat(size_t begin);
    void noise(const dcm::Element &element, Scope &scope, int depth);
    std::string value(const dcm::Content &content, Scope &parent, Scope &scope, Place place);
    std::string faultyValue(const dcm::Content &content, const Scope &parent);
    std::string number();
    std::string bitList(uint32_t limit, Scope &parent);
    std::string numberList();
    std::string word(const dcm::Vocabulary &vocabulary, uint32_t &row);
    std::string anyText(size_t limit);
    std::string ledName(Scope &scope);
    std::string source();
    void write(const std::string &text, Place place);

    Input &input_;
    Description description_;
    std::string body_;
    std::string declarations_;
    unsigned entities_ = 0;
};

} // namespace dcmfuzz

#endif
