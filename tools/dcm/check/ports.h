// The blocks of ports in slots and cards.
#ifndef DCM_TOOLS_CHECK_PORTS_H
#define DCM_TOOLS_CHECK_PORTS_H

#include "tools/dcm/check/rule.h"

#include <array>

namespace dcmtool {

// The description of each port in a block, by id: the last one counts.
using Describers = std::array<const KnownChild *, DCM_PANEL_IF_MAX + 1>;

Describers describersIn(const Context &block);

// Under what gives a port or group its port id.
Finding &atPortId(const Context &block, const KnownChild &port, const std::string &text, Findings &findings);
// The place of a port's id in a block.
Span idSpan(const Context &block, const KnownChild &port, const Findings &findings);

} // namespace dcmtool

#endif
