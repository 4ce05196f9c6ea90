#pragma once

#include <string>

namespace veltrane::config {

/// The man page of the program, or its completion for a shell, made from the table of its command line and the options
/// of the tool. @param kind  "man", "bash", "zsh" or "fish" @param name  of the program
std::string MakeDocument(const std::string& kind, const std::string& name, const std::string& version);

}  // namespace veltrane::config
