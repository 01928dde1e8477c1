// zeg-dict pos-train and pos, from a tiny corpus to the tagger's files.
#include <gtest/gtest.h>

#include <sstream>

#include "support/TempDir.h"
#include "tools/PosTrainer.h"
#include "tools/ZegDict.h"
#include "ws/pos/wsTrigramPosDict.h"

namespace {

int zegDict(const std::vector<std::string>& args, std::string& err) {
    std::ostringstream out, errs;
    const int code = zeg_tools::ZegDict(out, errs).run(args);
    err = errs.str();
    return code;
}

TEST(PosTrainer, CountsInnerWordsOfCompoundsAndMendsTypos) {
    zeg_test::TempDir dir;
    const std::string corpus =
        dir.write("c.txt",
                  "00000000-00-000-001/m  [中央/n  人民/n  电台/n]nt  报道/vvn  ，/w  坏/\n"
                  "00000000-00-000-002/m  人民/na  报道/v\n");
    std::string err;
    ASSERT_EQ(zegDict({"pos-train", "--input", corpus, "--output-dir", dir.path()}, err), 0);
    EXPECT_NE(err.find("7 tokens, 5 words, 1 malformed tokens skipped"), std::string::npos) << err;
    EXPECT_EQ(zeg_test::TempDir::read(dir.file("pos_tags.txt")), "n\nv\nvn\nw\n");
    EXPECT_EQ(zeg_test::TempDir::read(dir.file("pos_init_tags.txt")), "2 n\n");
    EXPECT_EQ(zeg_test::TempDir::read(dir.file("pos_bigrams.txt")),
              "2 n n\n1 n v\n1 n vn\n1 vn w\n");
    EXPECT_EQ(zeg_test::TempDir::read(dir.file("pos_trigrams.txt")),
              "1 n n n\n1 n n vn\n1 n vn w\n");
    EXPECT_EQ(zeg_test::TempDir::read(dir.file("pos_word_tags.txt")),
              "中央 n/1\n人民 n/2\n报道 v/1 vn/1\n电台 n/1\n， w/1\n");

    dir.write("patch.txt", "# fixed tags\n电台 v\n人民 zz\n");
    dir.write("props.txt", "1\tn\n2\tx\n3\tnrt\n");
    dir.write("map.txt", "x w\nnrt nr\n");
    ASSERT_EQ(zegDict({"pos", "--model-dir", dir.path(), "--output", dir.file("pos.dict"),
                       "--patch-input", dir.file("patch.txt"), "--patch-output",
                       dir.file("patch.dict"), "--properties", dir.file("props.txt"), "--tag-map",
                       dir.file("map.txt"), "--typeid2tag", dir.file("typeid.txt")},
                      err),
              0);
    EXPECT_NE(err.find("unknown tag 'zz'"), std::string::npos) << err;
    EXPECT_EQ(zeg_test::TempDir::read(dir.file("typeid.txt")), "1 n\n2 w\n");
    ws::TrigramPosDict dict(nullptr);
    ASSERT_EQ(dict.loadDict(dir.file("pos.dict").c_str()), 0);
    ASSERT_EQ(dict.loadPatchDict(dir.file("patch.dict").c_str()), 0);
    const char* list = dict.getWordInfoBuf("电台", 6, nullptr);
    ASSERT_EQ(ws::TrigramPosDict::getNumTags(list), 1);
    EXPECT_STREQ(dict.getTagName(ws::TrigramPosDict::getTagIdAt(list, 0)), "v");
    EXPECT_EQ(zegDict({"pos", "--model-dir", dir.path(), "--output", dir.file("x"), "--patch-input",
                       dir.file("patch.txt")},
                      err),
              2);
}

}  // namespace
