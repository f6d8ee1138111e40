#ifndef DCM_COMMON_KEYWORD_TABLES_H
#define DCM_COMMON_KEYWORD_TABLES_H

#include <dcm.h>

namespace dcm {

// The row of zero bytes after the last table.
extern char keywordTablesEnd[1][DCM_KEYWORD_SIZE];

} // namespace dcm

#endif
