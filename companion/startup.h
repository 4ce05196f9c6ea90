#pragma once

#include <memory>
#include <vector>

#include "request.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/options/xoption.h"

namespace veltrane::config {

using namespace detail;  // shared with the sample host

/// The tool as it would start now: its store after a start-up that only looks, and every error on the way.
class Startup {
public:
    /// @param tool       path of the program, which is not started
    /// @param arguments  its command line, without the program
    /// @throws Refusal  there is no such program, or an argument would end it at once
    Startup(const CString& tool, const std::vector<CString>& arguments, const CString& version);

    /// The same start-up once more, which may meet other files.
    std::unique_ptr<Startup> Again();

    /// The errors as lines for people; a hint that several share appears once.
    std::vector<CString> ErrorTexts() const;

    XOption options;
    CString tool;
    std::vector<XException> errors;  ///< each once, with hints

private:
    void RetrieveEach();
    void AddHintsOnce();
    void RefuseFinalArguments() const;
    template <class Step>
    bool Attempt(Step step);
};

}  // namespace veltrane::config
