#pragma once

#include <nlohmann/json.hpp>

#include "lspworld.h"

// The requests of the protocol, each with its parameters. They answer null where there is nothing to tell.

namespace veltrane::config {

LspJson Initialize(LspWorld& world, const LspJson& params);
LspJson Hover(LspWorld& world, const LspJson& params);
LspJson Complete(LspWorld& world, const LspJson& params);
LspJson GoToDefinition(LspWorld& world, const LspJson& params);
LspJson FindReferences(LspWorld& world, const LspJson& params);
LspJson ListSymbols(LspWorld& world, const LspJson& params);
LspJson ListFoldings(LspWorld& world, const LspJson& params);
LspJson ListActions(LspWorld& world, const LspJson& params);
LspJson ListTokens(LspWorld& world, const LspJson& params);

}  // namespace veltrane::config
