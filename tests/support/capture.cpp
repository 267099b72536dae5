#include "capture.h"

#include <iostream>
#include <sstream>

#include "common/fatal_error.h"

namespace pelkrin::test {
namespace {

// Restores the real streams however the body leaves.
class redirect {
public:
    redirect() : old_out_(std::cout.rdbuf(out_.rdbuf())), old_err_(std::cerr.rdbuf(err_.rdbuf())) {}
    ~redirect() {
        std::cout.rdbuf(old_out_);
        std::cerr.rdbuf(old_err_);
    }
    redirect(const redirect&) = delete;
    redirect& operator=(const redirect&) = delete;

    std::string out() const { return out_.str(); }
    std::string err() const { return err_.str(); }

private:
    std::ostringstream out_;
    std::ostringstream err_;
    std::streambuf* old_out_;
    std::streambuf* old_err_;
};

}  // namespace

console std_console() { return standard_console(); }

captured run_captured(const std::function<void()>& body) {
    captured result;
    redirect r;
    try {
        body();
    } catch (const fatal_error& e) {
        std::cerr << e.message() << std::flush;
        result.exit_status = e.status();
    }
    std::cout.clear();
    std::cerr.clear();
    result.out = r.out();
    result.err = r.err();
    return result;
}

}  // namespace pelkrin::test
