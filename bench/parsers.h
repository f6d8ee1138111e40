// Parsers that read a whole file, check that it is well-formed, call empty functions and build no tree. They return
// false if the file is not well-formed.
#ifndef DCM_BENCH_PARSERS_H
#define DCM_BENCH_PARSERS_H

namespace dcmbench {

// libxml2's SAX interface. The file is read in the same way as by queries, so this is the lower bound for a query.
bool parseWithSax(const char *file);
bool parseWithExpat(const char *file);

} // namespace dcmbench

#endif
