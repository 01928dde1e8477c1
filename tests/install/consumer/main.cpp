// A program built against an installed zeg: segments a sentence with the
// installed segmenter configuration and normalises a query with the
// installed normaliser configuration. Usage: consumer DATA_DIR
#include <cstdio>
#include <string>

#include "normalize/NormalizeIntf.h"
#include "ws/core/wsInterface.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: consumer DATA_DIR\n");
        return 2;
    }
    const std::string data = argv[1];
    ws::WsSegmenter segmenter;
    if (!segmenter.init((data + "/segmenter.conf").c_str())) return 1;
    const std::string sentence = "北京大学的学生";
    const char* words = segmenter.segment(sentence.data(), static_cast<unsigned>(sentence.size()), 0);
    if (words == nullptr) return 1;
    normalize::NormalizeIntf normaliser;
    if (!normaliser.init(data + "/normalizer.ini")) return 1;
    std::string key;
    if (normaliser.doNormalize("軟體 下載", 252, key, false, false) != 0) return 1;
    std::printf("%s\n%s\n", words, key.c_str());
    return 0;
}
