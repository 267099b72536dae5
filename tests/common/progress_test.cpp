// How far a long pass has come, on standard error.
#include "common/progress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace pelkrin {
namespace {

TEST(Progress, ShownOnlyWhenAsked) {
    std::ostringstream err;
    {
        progress p(err, "Pelkrin-prep: reading x", 1000, true);
        p.at(0);
        p.at(500);
        p.at(1000);
    }
    EXPECT_EQ(err.str(), "\rPelkrin-prep: reading x: 0%\rPelkrin-prep: reading x: 50%\rPelkrin-prep: reading x: 100%"
                         "\rPelkrin-prep: reading x: done\n");
    std::ostringstream quiet;
    {
        progress p(quiet, "reading x", 1000, false);
        p.at(500);
    }
    EXPECT_EQ(quiet.str(), "");
}

}  // namespace
}  // namespace pelkrin
