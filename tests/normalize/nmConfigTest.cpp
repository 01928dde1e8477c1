#include "normalize/nmConfig.h"

#include <gtest/gtest.h>

#include "norm_utility/AlgoConfig.h"
#include "norm_utility/YException.h"
#include "support/TempDir.h"

using normalize::nmConfig;
using norm_utility::YException;

namespace {

class nmConfigTest : public ::testing::Test {
protected:
    nmConfigTest() {
        ws = dir.write("ws.conf", "");
        stop = dir.write("stop.txt", "");
        syn = dir.write("syn.txt", "");
    }

    std::string configText(const std::string& maxLength = "MAX_INPUT_LENGTH=300") const {
        return "[SERVER]\nWS_CONFIG=" + ws + "\nSTOP_FILE = " + stop + "  \nSYNONYMS_FILE=" + syn +
               "\n" + maxLength + "\n";
    }

    // Runs init on `text`; returns the exception message ("" on success)
    // and leaves what init wrote to standard error in `err`.
    std::string initWith(const std::string& text) { return initPath(dir.write("zeg.ini", text)); }

    std::string initPath(const std::string& path) {
        testing::internal::CaptureStderr();
        std::string message;
        try {
            nmConfig::getInstance()->init(path);
        } catch (const YException& e) {
            message = e.GetMsg();
        }
        err = testing::internal::GetCapturedStderr();
        return message;
    }

    zeg_test::TempDir dir;
    std::string ws, stop, syn, err;
};

TEST_F(nmConfigTest, LoadsAndTrimsEveryOption) {
    ASSERT_EQ(initWith(configText()), "");
    nmConfig* c = nmConfig::getInstance();
    EXPECT_TRUE(c->isInitOK());
    EXPECT_EQ(c->getConfigFileName(), dir.file("zeg.ini"));
    EXPECT_EQ(c->getwsConfig(), ws);
    EXPECT_EQ(c->getStopFile(), stop);
    EXPECT_EQ(c->getSynonymsFile(), syn);
    EXPECT_EQ(c->getMaxInputLength(), 300);
    EXPECT_EQ(err, "");
}

TEST_F(nmConfigTest, RejectsMaxInputLengthsOfZeroAndBelow) {
    const std::string invalid = "Invalid value for option [MAX_INPUT_LENGTH} in section [SERVER].";
    for (const char* value : {"0", "-5", "abc", ""}) {
        EXPECT_EQ(initWith(configText(std::string("MAX_INPUT_LENGTH=") + value)), invalid) << value;
        EXPECT_EQ(err, "[nmConfig::init] " + invalid +
                           "\n[nmConfig::init] get max input length failed: " + invalid + "\n");
        EXPECT_FALSE(nmConfig::getInstance()->isInitOK());
    }
}

TEST_F(nmConfigTest, BlankPathIsReportedTwiceAndThrown) {
    const std::string text = "[SERVER]\nWS_CONFIG=" + ws + "\nSTOP_FILE=   \n";
    const std::string message = "Cannot get option STOP_FILE from section [SERVER].";
    EXPECT_EQ(initWith(text), message);
    EXPECT_EQ(err, message + "\n[nmConfig::init] get stop file failed: " + message + "\n");
}

TEST_F(nmConfigTest, MissingOptionCarriesTheReadersMessage) {
    const std::string text = "[SERVER]\nWS_CONFIG=" + ws + "\nSTOP_FILE=" + stop + "\n";
    const std::string message = "[SERVER]SYNONYMS_FILE is missed in configuration file.";
    EXPECT_EQ(initWith(text), message);
    EXPECT_EQ(err, "[nmConfig::init] get synonyms file failed: " + message + "\n");
}

TEST_F(nmConfigTest, PathsMustExistButMayBeDirectories) {
    const std::string absent = dir.file("absent.conf");
    const std::string message = "The given WS_CONFIG : " + absent + " does not exist.";
    EXPECT_EQ(initWith("[SERVER]\nWS_CONFIG=" + absent + "\n"), message);
    EXPECT_EQ(err, message + "\n[nmConfig::init] get ws config failed: " + message + "\n");

    ws = dir.mkdir("segmenter");
    EXPECT_EQ(initWith(configText()), "");
}

TEST_F(nmConfigTest, GettersRefuseBeforeASuccessfulInit) {
    ASSERT_NE(initWith("[SERVER]\n"), "");
    const nmConfig* c = nmConfig::getInstance();
    for (auto getter : {+[](const nmConfig* x) { x->getConfigFileName(); },
                        +[](const nmConfig* x) { x->getwsConfig(); },
                        +[](const nmConfig* x) { x->getStopFile(); },
                        +[](const nmConfig* x) { x->getSynonymsFile(); },
                        +[](const nmConfig* x) { x->getMaxInputLength(); }}) {
        try {
            getter(c);
            ADD_FAILURE() << "getter answered";
        } catch (const YException& e) {
            EXPECT_STREQ(e.GetMsg(), "configuration not initialized");
        }
    }
}

TEST_F(nmConfigTest, UnreadableFileAtFirstLoadIsReportedWithItsPath) {
    delete norm_utility::AlgoConfig::configurationInstance;
    norm_utility::AlgoConfig::configurationInstance = nullptr;
    const std::string path = dir.file("absent.ini");
    const std::string expected =
        "Cannot open configuration file " + path + ": No such file or directory";
    EXPECT_EQ(initPath(path), expected);
    EXPECT_EQ(err, "[nmConfig::init] failed while loading configuration file [" + path +
                       "]: " + expected + "\n");
    EXPECT_FALSE(nmConfig::getInstance()->isInitOK());
}

TEST_F(nmConfigTest, UnreadableFileAfterwardsLeavesNoOptions) {
    ASSERT_EQ(initWith(configText()), "");
    const std::string message = "[SERVER]WS_CONFIG is missed in configuration file.";
    EXPECT_EQ(initPath(dir.file("absent.ini")), message);
    EXPECT_EQ(err, "[nmConfig::init] get ws config failed: " + message + "\n");
}

}  // namespace
