// Standard output for those commands that print something of their own.
#ifndef DCM_TOOLS_OWN_OUTPUT_H
#define DCM_TOOLS_OWN_OUTPUT_H

#include <string>

namespace dcmtool {

// Has standard output for itself while it lives: what the library prints goes nowhere.
class OwnOutput {
public:
    OwnOutput();
    ~OwnOutput();
    OwnOutput(const OwnOutput &) = delete;
    OwnOutput &operator=(const OwnOutput &) = delete;

    // Prints all of a text. False when it cannot, which is said on standard error unless nobody reads any more.
    bool print(const std::string &text) const;
    bool isTerminal() const;
    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

// Completes what was printed through stdio. False when that failed, which is said as by OwnOutput::print().
bool endOutput();

} // namespace dcmtool

#endif
