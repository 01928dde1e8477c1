#include "tools/DataFingerprint.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "norm_utility/StdioFile.h"
#include "ws/core/wsConfig.h"

namespace zeg_tools {

namespace {

// Every key of the segmenter's configuration that names a data file.
const char* const kFileKeys[] = {
    "BASE_DICTIONARY",           "ALNUM_DICTIONARY",
    "USER_DICTIONARY",           "CHARACTER_FREQ_DICT",
    "PROPERTY_DICT_FILE",        "CORRECT_PHRASE_DICT",
    "NUMERIC_RULE_FILE",         "SPACE_DEFINE_FILE",
    "CHN_FAMILY_NAME_FREQ_DICT", "MAXENT_PERSON_NAME_DICT",
    "CHAR_BIGRAM_DICT",          "CHN_2CHAR_PERSON_NAME_DICT",
    "CHN_FAMILY_NAME_DICT",      "CHN_FAMILY_NAME_PROB_DICT",
    "CHN_GIVEN_NAME_DICT",       "COMMON_WORD_DICT",
    "FULL_CONTEXT_DICT",         "JPN_FAMILY_NAME_DICT",
    "JPN_GIVEN_NAME_DICT",       "PUNCTUATION_MARK_DICT",
    "RIGHT_CONTEXT_DICT",        "ORGNIZATION_INNERWORD_DICT",
    "ORGNIZATION_SUFFIX_DICT",   "ORGNIZATION_TEZHI_DICT",
    "ORGNIZATION_ZONE_DICT",     "TRIGRAM_POS_DICT",
    "TRIGRAM_POS_PATCH_DICT",    "TRIGRAM_POS_TYPEID2TAG",
};

// Every other key the segmenter or its stages read.
const char* const kOptionKeys[] = {
    "SEGMENT_ALGORITHM",
    "ENABLE_REMOVE_SPACE",
    "ENABLE_NORMALIZE",
    "ENABLE_DENORMALIZE",
    "ENABLE_NUMERIC_EXPRESSION_RECOGNIZER",
    "ENABLE_RULEBASED_NAME_TAGGER",
    "ENABLE_MAXENT_PERSON_NAME_TAGGER",
    "ENABLE_FAMILY_NAME_CHECK",
    "ENABLE_RIGHT_BOUNDARY_CHECK",
    "ENABLE_MAXENT_PLACE_NAME_TAGGER",
    "ENABLE_COMBINE_SINGLE_CHARACTER",
    "ENABLE_MERGE_SUFFIX",
    "ENABLE_SPLIT_SUFFIX",
    "ENABLE_MERGE_TWO_CHAR",
    "ENABLE_COMPOUND_PHRASE",
    "ENABLE_CORRECT_PHRASE",
    "ENABLE_MULTIPLE_SEGMENTATION_PHRASE",
    "ENABLE_POS_TAGGER",
    "ENABLE_WORD_ID",
    "ENABLE_WORD_RICH_INFO",
    "ENABLE_PLUG_IN",
    "ENABLE_RULEBASED_ORGNIZATION_TAGGER",
    "SEGMENT_RESULT_NUM",
    "OUT_TYPE",
    "SEG_TYPE",
    "NUMERIC_THRESHOLD",
    "RULEBASED_NAME_THRESHOLD",
    "MAXENT_NAME_THRESHOLD",
    "ORGNIZATION_THRESHOLD",
    "PREPROCESS_PLUG_IN",
    "POSTPROCESS_PLUG_IN",
    "REVISER_PLUG_IN",
    "CHN_FAMILY_NAME_FREQ_THRESHOLD",
    "CHAR_IN_WORD_PROB_THRESHOLD",
    "CHN_FAMILY_NAME_PROB_HIGH_THRESHOLD",
    "CHN_FAMILY_NAME_PROB_THRESHOLD",
};

void splitPaths(const std::string& value, std::vector<std::string>& files) {
    size_t at = value.find_first_not_of(" ;");
    while (at != std::string::npos) {
        const size_t end = value.find_first_of(" ;", at);
        files.push_back(value.substr(at, end == std::string::npos ? end : end - at));
        at = value.find_first_not_of(" ;", end);
    }
}

}  // namespace

std::string libraryVersion() { return ZEG_VERSION; }

bool DataFingerprint::addFile(const std::string& path, std::string& error) {
    norm_utility::StdioFile file;
    errno = 0;
    if (!file.open(path.c_str())) {
        error = "cannot read " + path + ": " + std::strerror(errno);
        return false;
    }
    char buffer[65536];
    size_t n;
    while ((n = file.read(buffer, sizeof buffer)) > 0) {
        addText(std::string(buffer, n));
    }
    if (file.failed()) {
        error = "cannot read " + path + ": " + std::strerror(errno);
        return false;
    }
    ++m_files;
    return true;
}

void DataFingerprint::addText(const std::string& text) {
    for (const char c : text) m_hash = (m_hash ^ static_cast<unsigned char>(c)) * 1099511628211ull;
}

std::string DataFingerprint::hex() const {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(m_hash));
    return text;
}

bool segmenterData(const std::string& configPath, std::string& settings,
                   std::vector<std::string>& files, std::string& error) {
    ws::Config config;
    if (!config.init(configPath.c_str())) {
        error = "cannot read " + configPath;
        return false;
    }
    for (const char* key : kOptionKeys)
        settings += std::string(key) + "=" + config.getString(key, "") + "\n";
    for (const char* key : kFileKeys) splitPaths(config.getString(key, ""), files);
    return true;
}

bool versionLine(const std::string& tool, const std::string& settings,
                 const std::vector<std::string>& files, std::string& line, std::string& error) {
    DataFingerprint print;
    print.addText(settings);
    for (const auto& path : files) {
        if (!print.addFile(path, error)) return false;
    }
    line = tool + " " + libraryVersion() + ", data " + print.hex() + " (" +
           std::to_string(print.files()) + " files)";
    return true;
}

}  // namespace zeg_tools
