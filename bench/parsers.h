// Parsers that read the whole of a file, check that it is well-formed, call functions that do nothing, and build
// nothing. False when the file is not well-formed.
#ifndef DCM_BENCH_PARSERS_H
#define DCM_BENCH_PARSERS_H

namespace dcmbench {

// libxml2's SAX interface. The file is read as queries read theirs, so that no query that has libxml2 parse the whole
// file can cost less.
bool parseWithSax(const char *file);
bool parseWithExpat(const char *file);

} // namespace dcmbench

#endif
