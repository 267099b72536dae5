// The prefix rule and the two names made from it.
#include "reads_format/output_names.h"

#include <gtest/gtest.h>

namespace pelkrin {
namespace {

// The prefix rule, one test per row of its table.
TEST(PrefixRule, PlainAceName) { EXPECT_EQ(output_prefix("454Contigs.ace"), "454Contigs"); }
TEST(PrefixRule, DirectoryPartIsKept) { EXPECT_EQ(output_prefix("/data/run1/454Contigs.ace"), "/data/run1/454Contigs"); }
TEST(PrefixRule, Ace2Extension) { EXPECT_EQ(output_prefix("contigs.ace2"), "contigs"); }
TEST(PrefixRule, AceBakLastSetCharacterIsTheA) { EXPECT_EQ(output_prefix("my.ace.bak"), "my.ac"); }
TEST(PrefixRule, FastaName) { EXPECT_EQ(output_prefix("Contigs.fasta"), "Contigs.f"); }
TEST(PrefixRule, LowerCaseSearchFindsTheDotOfUpperCaseExtension) { EXPECT_EQ(output_prefix("sample.ACE"), "sam"); }
TEST(PrefixRule, UpperCaseNameAndExtension) { EXPECT_EQ(output_prefix("SAMPLE.ACE"), "SAM"); }
TEST(PrefixRule, ShortStemGivesEmptyPrefix) { EXPECT_EQ(output_prefix("asm.ACE"), ""); }
TEST(PrefixRule, UpperCaseSearchFindsLastA) { EXPECT_EQ(output_prefix("DATA"), ""); }
TEST(PrefixRule, NoSetCharacterKeepsTheName) { EXPECT_EQ(output_prefix("XYZ"), "XYZ"); }
TEST(PrefixRule, HitAtZeroWrapsAndKeepsTheName) { EXPECT_EQ(output_prefix("ab"), "ab"); }

TEST(OutputNames, ReadsAndIndexNamesFollowThePrefix) {
    EXPECT_EQ(reads_file_name("asm"), "asm.reads");
    EXPECT_EQ(index_file_name("asm"), "asm.qdx");
    EXPECT_EQ(reads_file_name(""), ".reads");
    EXPECT_EQ(index_file_name(""), ".qdx");
}

}  // namespace
}  // namespace pelkrin
