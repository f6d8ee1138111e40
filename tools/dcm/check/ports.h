// The blocks of ports in slots and cards.
#ifndef DCM_TOOLS_CHECK_PORTS_H
#define DCM_TOOLS_CHECK_PORTS_H

#include "tools/dcm/check/rule.h"

#include <array>

namespace dcmtool {

// Where a block describes each of its ports, by their ids: what comes last holds.
using Describers = std::array<const KnownChild *, DCM_PANEL_IF_MAX + 1>;

Describers describersIn(const Context &block);

// Where the id of a port in a block is written.
Span idSpan(const Context &block, const KnownChild &port, const Findings &findings);

} // namespace dcmtool

#endif
