#pragma once

#include <nlohmann/json.hpp>

#include "lspworld.h"

// The client's notifications, which get no reply.

namespace veltrane::config {

void OnInitialized(LspWorld& world, const LspJson& params);
void OnOpened(LspWorld& world, const LspJson& params);
void OnChanged(LspWorld& world, const LspJson& params);
void OnClosed(LspWorld& world, const LspJson& params);
void OnFilesChanged(LspWorld& world, const LspJson& params);

}  // namespace veltrane::config
