#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "veltrane/platform/text/cstring.h"

namespace torture {

/// Objects of the library, what is done to them while memory fails, and what must hold afterwards.
class Scenario {
public:
    virtual ~Scenario() = default;
    /// Runs with failing memory; may throw anything.
    virtual void Act() = 0;
    /// Runs with memory again. @return what is broken; empty if nothing is
    virtual std::string Fault() = 0;
};

struct NamedScenario {
    const char* name;
    std::function<std::unique_ptr<Scenario>(const CString& folder)> make;
};

/// @param folder  that Prepare has filled
const std::vector<NamedScenario>& Scenarios();

/// Writes the files that the scenarios read.
void Prepare(const std::string& folder);

}  // namespace torture
