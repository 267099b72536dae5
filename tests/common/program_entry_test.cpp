// Nothing thrown leaves a program's main: every kind of exception becomes a
// message and a status.
#include "common/program_entry.h"

#include <gtest/gtest.h>

#include <new>
#include <sstream>
#include <stdexcept>

#include "common/fatal_error.h"

namespace pelkrin {
namespace {

struct outcome {
    int status;
    std::string err;
};

outcome guarded(const std::function<int()>& body) {
    std::ostringstream err;
    const int status = run_guarded("Prog", err, body);
    return {status, err.str()};
}

TEST(ProgramEntry, TheBodysStatusWhenNothingIsThrown) {
    const outcome o = guarded([] { return 7; });
    EXPECT_EQ(o.status, 7);
    EXPECT_EQ(o.err, "");
}

TEST(ProgramEntry, AFatalErrorGivesItsTextAndStatusAsTheyAre) {
    const outcome o = guarded([]() -> int { throw fatal_error(2, "exactly this, no line end"); });
    EXPECT_EQ(o.status, 2);
    EXPECT_EQ(o.err, "exactly this, no line end");
}

TEST(ProgramEntry, RunningOutOfMemoryIsNamed) {
    const outcome o = guarded([]() -> int { throw std::bad_alloc(); });
    EXPECT_EQ(o.status, 1);
    EXPECT_EQ(o.err, "Prog: out of memory\n");
}

TEST(ProgramEntry, AnyOtherExceptionEndsWithItsTextAndStatus1) {
    const outcome o = guarded([]() -> int { throw std::runtime_error("thread creation failed"); });
    EXPECT_EQ(o.status, 1);
    EXPECT_EQ(o.err, "Prog: thread creation failed\n");
    const outcome odd = guarded([]() -> int { throw 42; });
    EXPECT_EQ(odd.status, 1);
    EXPECT_EQ(odd.err, "Prog: unexpected error\n");
}

}  // namespace
}  // namespace pelkrin
