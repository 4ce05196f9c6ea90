#pragma once

#include <string>

/// The error that the host's database client gives, asked for through the library.
std::string TextOfTheClient();
