#pragma once

namespace velantor {

/// Whether standard error goes to a terminal, where someone may read it.
bool standardErrorIsTerminal();

} // namespace velantor
