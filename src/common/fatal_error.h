#pragma once
// The one error that ends a program: the exit status and the exact text to
// write to standard error (line end included, where the message has one).
// Library code throws it where the job cannot go on; only a program's entry
// catches it, writes the text and returns the status. Output files flush and
// close as the stack unwinds, so they hold what was written before the error.
#include <stdexcept>
#include <string>

namespace pelkrin {

class fatal_error : public std::runtime_error {
public:
    fatal_error(int status, const std::string& message) : std::runtime_error(message), status_(status) {}
    int status() const { return status_; }
    // The text to write to standard error, as it is.
    const char* message() const { return what(); }

private:
    int status_;
};

}  // namespace pelkrin
