#pragma once

#include <nlohmann/json.hpp>

#include "lspworld.h"

// What the client tells without a reply.

namespace veltrane::config {

void TakeInitialized(LspWorld& world, const LspJson& params);
void TakeOpened(LspWorld& world, const LspJson& params);
void TakeChanged(LspWorld& world, const LspJson& params);
void TakeClosed(LspWorld& world, const LspJson& params);
void TakeFilesChanged(LspWorld& world, const LspJson& params);

}  // namespace veltrane::config
