#pragma once

#include <nlohmann/json.hpp>

#include "lspworld.h"

// What the client says, each with its parameters.

namespace veltrane::config {

LspJson Initialize(LspWorld& world, const LspJson& params);

// Requests about a document. They answer null where there is nothing to tell.

LspJson Hover(LspWorld& world, const LspView& view, const LspJson& params);
LspJson Complete(LspWorld& world, const LspView& view, const LspJson& params);
LspJson GoToDefinition(LspWorld& world, const LspView& view, const LspJson& params);
LspJson FindReferences(LspWorld& world, const LspView& view, const LspJson& params);
LspJson ListSymbols(LspWorld& world, const LspView& view, const LspJson& params);
LspJson ListFoldings(LspWorld& world, const LspView& view, const LspJson& params);
LspJson ListActions(LspWorld& world, const LspView& view, const LspJson& params);
LspJson ListTokens(LspWorld& world, const LspView& view, const LspJson& params);

// Notifications, which get no reply.

void OnInitialized(LspWorld& world, const LspJson& params);
void OnOpened(LspWorld& world, const LspJson& params);
void OnChanged(LspWorld& world, const LspJson& params);
void OnClosed(LspWorld& world, const LspJson& params);
void OnFilesChanged(LspWorld& world, const LspJson& params);

/// The kinds of tokens and their marks, in the order of their numbers.
LspJson TokenLegend();

}  // namespace veltrane::config
