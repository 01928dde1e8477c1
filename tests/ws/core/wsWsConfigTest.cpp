#include "ws/core/wsWsConfig.h"

#include <gtest/gtest.h>

#include "support/TempDir.h"

using ws::WsConfig;

namespace {

typedef std::vector<std::string> Names;

const char* const kEveryOption =
    "ENABLE_REMOVE_SPACE = true\n"
    "ENABLE_NORMALIZE = 2\n"
    "ENABLE_DENORMALIZE = true\n"
    "ENABLE_NUMERIC_EXPRESSION_RECOGNIZER = true\n"
    "ENABLE_RULEBASED_NAME_TAGGER = true\n"
    "ENABLE_MAXENT_PERSON_NAME_TAGGER = true\n"
    "ENABLE_FAMILY_NAME_CHECK = true\n"
    "ENABLE_RIGHT_BOUNDARY_CHECK = true\n"
    "ENABLE_MAXENT_PLACE_NAME_TAGGER = true\n"
    "ENABLE_COMBINE_SINGLE_CHARACTER = true\n"
    "ENABLE_MERGE_SUFFIX = true\n"
    "ENABLE_SPLIT_SUFFIX = true\n"
    "ENABLE_MERGE_TWO_CHAR = true\n"
    "ENABLE_COMPOUND_PHRASE = true\n"
    "ENABLE_CORRECT_PHRASE = true\n"
    "ENABLE_MULTIPLE_SEGMENTATION_PHRASE = true\n"
    "ENABLE_POS_TAGGER = 3\n"
    "ENABLE_WORD_ID = 4\n"
    "ENABLE_WORD_RICH_INFO = true\n"
    "ENABLE_PLUG_IN = true\n"
    "ENABLE_RULEBASED_ORGNIZATION_TAGGER = true\n"
    "SEGMENT_RESULT_NUM = 5\n"
    "OUT_TYPE = 6\n"
    "SEG_TYPE = 7\n"
    "NUMERIC_THRESHOLD = 1.5\n"
    "RULEBASED_NAME_THRESHOLD = 2.5\n"
    "MAXENT_NAME_THRESHOLD = 3.5\n"
    "ORGNIZATION_THRESHOLD = 4.5\n"
    "$LIB = /opt/lib\n"
    "PREPROCESS_PLUG_IN = $LIB/pre.so\n"
    "POSTPROCESS_PLUG_IN =   a.so    b.so  \n"
    "REVISER_PLUG_IN = r1.so r2.so\n";

void expectAllBoolsAre(const WsConfig& c, bool on) {
    const bool flags[] = {c.enableRemoveSpace, c.enableDenormalize, c.enableNumericRecognizer,
                          c.enableRuleNameTagger, c.enableMaxentPersonNameTagger,
                          c.enableFamilyNameCheck, c.enableRightBoundaryCheck,
                          c.enableMaxentPlaceNameTagger, c.enableCombineSingleCharacter,
                          c.enableMergeSuffix, c.enableSplitSuffix, c.enableMergeTwoChar,
                          c.enableCompoundPhrase, c.enableCorrectPhrase,
                          c.enableMultipleSegmentationPhrase, c.enableWordRichInfo,
                          c.enablePlugIn, c.enableRuleOrgnizationTagger};
    for (std::size_t i = 0; i < sizeof flags / sizeof flags[0]; ++i) {
        EXPECT_EQ(flags[i], on) << "flag #" << i;
    }
}

// enableNormalize, enablePosTagger, enableWordId, segmentResultNum, outType, segType.
std::vector<long> numbers(const WsConfig& c) {
    return {c.enableNormalize, c.enablePosTagger, c.enableWordId,
            c.segmentResultNum, c.outType, c.segType};
}

// numeric, rule-based name, maximum-entropy name, organisation.
std::vector<double> thresholds(const WsConfig& c) {
    return {c.numericThreshold, c.ruleNameThreshold, c.maxentNameThreshold,
            c.orgnizationThreshold};
}

TEST(WsConfig, ReadsEveryOptionFromItsKey) {
    zeg_test::TempDir dir;
    WsConfig c;
    ASSERT_TRUE(c.init(dir.write("all.conf", kEveryOption).c_str()));
    expectAllBoolsAre(c, true);
    EXPECT_EQ(numbers(c), std::vector<long>({2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(thresholds(c), std::vector<double>({1.5, 2.5, 3.5, 4.5}));
    EXPECT_EQ(c.preProcessPlugIns, Names({"/opt/lib/pre.so"}));
    EXPECT_EQ(c.postProcessPlugIns, Names({"a.so", "b.so"}));
    EXPECT_EQ(c.reviserPlugIns, Names({"r1.so", "r2.so"}));
    // Components read their own keys from the same object.
    EXPECT_EQ(c.getString("REVISER_PLUG_IN", ""), "r1.so r2.so");
}

TEST(WsConfig, PlugInListsNeedThePlugInSwitch) {
    zeg_test::TempDir dir;
    WsConfig c;
    ASSERT_TRUE(c.init(dir.write("off.conf", "ENABLE_PLUG_IN = TRUE\nREVISER_PLUG_IN = r.so\n"
                                             "PREPROCESS_PLUG_IN = p.so\n")
                           .c_str()));
    EXPECT_FALSE(c.enablePlugIn);
    EXPECT_TRUE(c.reviserPlugIns.empty());
    EXPECT_TRUE(c.preProcessPlugIns.empty());
}

TEST(WsConfig, FailedInitLeavesEveryMemberAlone) {
    zeg_test::TempDir dir;
    WsConfig c;
    ASSERT_TRUE(c.init(dir.write("all.conf", kEveryOption).c_str()));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(c.init(dir.file("missing.conf").c_str()));
    testing::internal::GetCapturedStderr();
    expectAllBoolsAre(c, true);
    EXPECT_EQ(c.outType, 6);
    EXPECT_EQ(c.reviserPlugIns.size(), 2u);
}

}  // namespace
