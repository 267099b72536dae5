#include "capture.h"

#include <iostream>
#include <sstream>

#include "common/end_process.h"

namespace pelkrin::test {
namespace {

struct process_ended {
    int status;
};

// Restores the real streams and the exit hook however the body leaves.
class redirect {
public:
    redirect()
        : old_out_(std::cout.rdbuf(out_.rdbuf())),
          old_err_(std::cerr.rdbuf(err_.rdbuf())),
          old_hook_(set_end_process_hook([](int status) { throw process_ended{status}; })) {}
    ~redirect() {
        std::cout.rdbuf(old_out_);
        std::cerr.rdbuf(old_err_);
        set_end_process_hook(old_hook_);
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
    end_process_hook old_hook_;
};

}  // namespace

captured run_captured(const std::function<void()>& body) {
    captured result;
    redirect r;
    try {
        body();
    } catch (const process_ended& e) {
        result.exit_status = e.status;
    }
    std::cout.clear();
    std::cerr.clear();
    result.out = r.out();
    result.err = r.err();
    return result;
}

}  // namespace pelkrin::test
